#include "ProgressBar.h"

#include "Drawing.h"

#include <algorithm>

static constexpr int barHeight = 6;
static constexpr int percent = 100; // the scale for screen readers

ProgressBar::ProgressBar(const Theme& theme, QWidget* parent) : Themed(theme, parent)
{
    setRange(0, percent);
    setValue(0);
    setTextVisible(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ProgressBar::setFraction(double fraction)
{
    // In this order, so that NaN becomes 0.
    m_fraction = std::min(1.0, std::max(0.0, fraction));
    setValue(static_cast<int>(m_fraction * percent));
    update();
}

QSize ProgressBar::sizeHint() const
{
    return {120, barHeight};
}

void ProgressBar::paintEvent(QPaintEvent*)
{
    Drawing::Painter painter(*this);
    const qreal radius = height() / 2.0;
    Drawing::fill(painter, rect(), radius, m_theme[ColorRole::track]);
    if (m_fraction <= 0)
        return;
    // Never shorter than its round ends. Not rounded to whole pixels, so that it grows smoothly.
    const qreal length = std::max<qreal>(height(), width() * m_fraction);
    const qreal start = layoutDirection() == Qt::RightToLeft ? width() - length : 0;
    Drawing::fill(painter, QRectF(start, 0, length, height()), radius, m_theme[ColorRole::accent]);
}
