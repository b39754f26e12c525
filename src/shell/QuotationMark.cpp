#include "QuotationMark.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace QuotationMark {

namespace {

constexpr qreal grid = 16; // units a side

/// One of the two: a round head and a tail that ends in a point below its left edge.
QPainterPath comma(qreal left)
{
    constexpr qreal top = 4;
    constexpr qreal size = 5;
    QPainterPath head;
    head.addEllipse(QRectF(left, top, size, size));
    QPainterPath tail(QPointF(left + size, top + size / 2));
    tail.cubicTo(left + size, top + 6, left + 3, top + 7.5, left + 0.75, top + 8);
    tail.cubicTo(left + 2, top + 6.5, left + 2.5, top + 5.5, left + 2.5, top + size - 0.5);
    tail.closeSubpath();
    return head.united(tail);
}

class Engine : public QIconEngine
{
public:
    explicit Engine(bool isDark) : m_isDark(isDark) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode, QIcon::State) override
    {
        const qreal side = qMin(area.width(), area.height());
        const QPainterPath path = comma(2) | comma(9);
        QColor rim = m_isDark ? Qt::black : Qt::white;
        rim.setAlphaF(0.75F);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(area).center() - QPointF(side, side) / 2);
        painter->scale(side / grid, side / grid);
        painter->strokePath(path, QPen(rim, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->fillPath(path, m_isDark ? QColor(0xF2F2F4) : QColor(0x2B2B2E));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    /// Those that panels on the session bus are sent.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new Engine(*this); }

private:
    bool m_isDark; // the surroundings
};

} // namespace

QIcon icon(bool isDark)
{
    return QIcon(new Engine(isDark));
}

} // namespace QuotationMark
