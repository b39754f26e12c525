#include "ScrollBar.h"

#include "Drawing.h"
#include "Theme.h"

#include <QCommonStyle>
#include <QStyleOptionSlider>

namespace {

constexpr int extent = 12;
constexpr int shortestThumb = 24;
constexpr qreal margin = 3;
constexpr qreal restOpacity = 0.32;
constexpr qreal activeOpacity = 0.55;

/// Says where the mouse finds the thumb, which moves along the whole length because there are no
/// arrows.
class Style : public QCommonStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        if (metric == PM_ScrollBarExtent)
            return extent;
        if (metric == PM_ScrollBarSliderMin)
            return shortestThumb;
        return QCommonStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override
    {
        if (hint == SH_ScrollBar_Transient)
            return 0;
        return QCommonStyle::styleHint(hint, option, widget, result);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override
    {
        const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || !bar)
            return QCommonStyle::subControlRect(control, option, part, widget);
        const bool isHorizontal = bar->orientation == Qt::Horizontal;
        const int length = isHorizontal ? bar->rect.width() : bar->rect.height();
        const int thumb = thumbLength(*bar, length);
        const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                                  length - thumb, bar->upsideDown);
        const auto stretch = [&](int from, int to) {
            return isHorizontal ? QRect(from, 0, to - from, bar->rect.height())
                                : QRect(0, from, bar->rect.width(), to - from);
        };
        switch (part) {
        case SC_ScrollBarGroove:
            return bar->rect;
        case SC_ScrollBarSlider:
            return stretch(start, start + thumb);
        case SC_ScrollBarSubPage:
            return stretch(0, start);
        case SC_ScrollBarAddPage:
            return stretch(start + thumb, length);
        default:
            return {};
        }
    }

private:
    static int thumbLength(const QStyleOptionSlider& bar, int length)
    {
        const auto range = static_cast<qreal>(bar.maximum) - bar.minimum;
        const int share = static_cast<int>(length * bar.pageStep / (range + bar.pageStep));
        return std::min(length, std::max(shortestThumb, share));
    }
};

} // namespace

ScrollBar::ScrollBar(const Theme& theme, Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent), m_theme(theme)
{
    auto* const style = new Style;
    style->setParent(this);
    setStyle(style);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAttribute(Qt::WA_Hover);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ScrollBar::paintEvent(QPaintEvent*)
{
    if (maximum() == minimum())
        return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF thumb =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isActive = underMouse() || isSliderDown();
    const QColor color =
        Drawing::faded(m_theme[ColorRole::label], isActive ? activeOpacity : restOpacity);
    Drawing::fill(painter, thumb.adjusted(margin, margin, -margin, -margin),
                  (extent - 2 * margin) / 2, color);
}
