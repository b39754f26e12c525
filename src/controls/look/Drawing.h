#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QWidget>

/// Parts that several controls draw in the same way.
namespace Drawing {

/// The opacity of a disabled control.
constexpr qreal disabledOpacity = 0.4;

/// The opacity of a focus ring in the accent colour, and its width.
constexpr qreal focusOpacity = 0.6;
constexpr qreal focusWidth = 2;

/// A painter of smooth edges on a widget, which is pale while it is disabled.
class Painter : public QPainter
{
public:
    explicit Painter(QWidget& widget) : QPainter(&widget)
    {
        setRenderHint(Antialiasing);
        if (!widget.isEnabled())
            setOpacity(disabledOpacity);
    }
};

inline QColor faded(QColor color, qreal opacity)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

/// A rounded rectangle without an edge.
inline void fill(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

/// The edge of a rounded rectangle, drawn inside of `rect`.
inline void edge(QPainter& painter, const QRectF& rect, qreal radius, const QPen& pen)
{
    const qreal half = pen.widthF() / 2;
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace Drawing
