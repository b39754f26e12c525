#pragma once

#include "Symbol.h"
#include "Themed.h"

#include <QRadioButton>

#include <optional>

class Fade;

/// One choice of a SegmentedControl. For the keyboard and for screen readers it is a radio button;
/// it draws only its icon and its text. Main thread.
class Segment : public Themed<QRadioButton>
{
    Q_OBJECT

public:
    Segment(const Theme& theme, const QString& text, std::optional<Symbol> symbol, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    bool hitButton(const QPoint& point) const override { return rect().contains(point); }
    void paintEvent(QPaintEvent* event) override;

private:
    int contentWidth() const;

    std::optional<Symbol> m_symbol;
    Fade* m_hover;
};
