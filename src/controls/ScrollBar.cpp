#include "ScrollBar.h"

#include "Drawing.h"

#include <QCommonStyle>
#include <QStyleOptionSlider>

namespace {

constexpr int extent = 12;
constexpr int shortestThumb = 24;
constexpr qreal margin = 3;
constexpr qreal restOpacity = 0.32;
constexpr qreal activeOpacity = 0.55;

/// Says where the mouse finds the thumb, which moves along the whole length.
class Style : public QCommonStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        if (metric == PM_ScrollBarExtent)
            return 0; // the length of the arrows, of which there are none
        if (metric == PM_ScrollBarSliderMin)
            return shortestThumb;
        return QCommonStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

ScrollBar::ScrollBar(const Theme& theme, QWidget* parent) : Themed(theme, Qt::Vertical, parent)
{
    auto* const style = new Style;
    style->setParent(this);
    setStyle(style);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAttribute(Qt::WA_Hover);
}

QSize ScrollBar::sizeHint() const
{
    return {extent, 2 * extent + shortestThumb};
}

void ScrollBar::paintEvent(QPaintEvent*)
{
    if (maximum() == minimum())
        return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF thumb =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    Drawing::Painter painter(*this);
    const bool isActive = underMouse() || isSliderDown();
    const QColor color =
        Drawing::faded(m_theme[ColorRole::label], isActive ? activeOpacity : restOpacity);
    Drawing::fill(painter, thumb.adjusted(margin, margin, -margin, -margin),
                  (extent - 2 * margin) / 2, color);
}
