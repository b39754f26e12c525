#pragma once

#include "Symbol.h"

#include <QWidget>

#include <optional>
#include <vector>

class Fade;
class Segment;
class Theme;

/// A row of choices of which one is always chosen, the raised one. With the keyboard it is one
/// stop; the arrows choose. Screen readers find radio buttons in a group that has this widget's
/// accessible name. Main thread.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    struct Choice
    {
        QString text;
        std::optional<Symbol> symbol = std::nullopt;
    };

    /// The first is chosen. Requires: there is one.
    SegmentedControl(const Theme& theme, const std::vector<Choice>& choices,
                     QWidget* parent = nullptr);

    /// The number of the chosen one, from 0.
    int index() const { return m_index; }

    /// Chooses; announced if it is another one. Requires: there is such a choice.
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

    const Theme& m_theme;
    std::vector<Segment*> m_segments;
    int m_index = 0;
    Fade* m_pill; // its place, as the number of a choice
};
