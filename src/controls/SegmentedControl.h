#pragma once

#include "Symbol.h"
#include "Themed.h"

#include <QWidget>

#include <optional>
#include <vector>

class Fade;
class Segment;

/// A row of choices. One is always chosen and raised. For the Tab key the row is one stop; the
/// arrow keys choose. Screen readers find radio buttons in a group that has this widget's
/// accessible name. Main thread.
class SegmentedControl : public Themed<QWidget>
{
    Q_OBJECT

public:
    struct Choice
    {
        QString text;
        std::optional<Symbol> symbol = std::nullopt;
    };

    /// Chooses the first. Requires: there is at least one choice.
    SegmentedControl(const Theme& theme, const std::vector<Choice>& choices,
                     QWidget* parent = nullptr);

    /// The index of the chosen one, from 0.
    int index() const { return m_index; }

    /// Chooses this one. Announced by indexChanged() if another one was chosen. Requires: there is
    /// such a choice.
    void setIndex(int index);

    /// The buttons, whose object names are "segment0", "segment1" and so on.
    const std::vector<Segment*>& segments() const { return m_segments; }

signals:
    void indexChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(int index);
    void updateTabStop();

    std::vector<Segment*> m_segments;
    int m_index = 0;
    Fade* m_pill; // where the raised part is, as an index
};
