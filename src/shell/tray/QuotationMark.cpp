#include "QuotationMark.h"

#include "Icon.h"

#include <QIconEngine>
#include <QLineF>
#include <QPainter>

namespace QuotationMark {

namespace {

QPixmap symbol(int side, const QColor& color)
{
    return Icon::pixmap(Symbol::quotation, side, 1, color);
}

/// The quotation marks drawn a little off in every direction, so that they show all around those
/// drawn over them.
QPixmap rim(int side, const QColor& color)
{
    QPixmap result(side, side);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int angle = 0; angle < 360; angle += 45)
        painter.drawPixmap(QLineF::fromPolar(side / 16.0, angle).p2(), symbol(side, color));
    return result;
}

class Engine : public QIconEngine
{
public:
    explicit Engine(bool isDark) : m_isDark(isDark) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode, QIcon::State) override
    {
        const int side = qMin(area.width(), area.height());
        const QPoint corner = area.center() - QPoint((side - 1) / 2, (side - 1) / 2);
        painter->save();
        constexpr qreal rimOpacity = 0.75;
        painter->setOpacity(rimOpacity);
        painter->drawPixmap(corner, rim(side, m_isDark ? Qt::black : Qt::white));
        painter->setOpacity(1);
        painter->drawPixmap(corner, symbol(side, m_isDark ? QColor(0xF2F2F4) : QColor(0x2B2B2E)));
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

    /// The sizes that are sent to panels on the session bus.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new Engine(*this); }

private:
    bool m_isDark; // whether the surroundings are dark
};

} // namespace

QIcon icon(bool isDark)
{
    return QIcon(new Engine(isDark));
}

} // namespace QuotationMark
