#include "Icon.h"

#include "Drawing.h"
#include "Theme.h"

#include <QFile>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>

namespace Icon {

namespace {

/// The size that the files are drawn for, and the attribute that has the width of their lines.
constexpr int grid = 16;
constexpr double lineWidth = 1.5;
constexpr const char* lineAttribute = "stroke-width=\"1.5\"";

QString name(Symbol symbol)
{
    switch (symbol) {
    case Symbol::quotation:
        return QStringLiteral("quotation");
    case Symbol::clipboard:
        return QStringLiteral("clipboard");
    case Symbol::document:
        return QStringLiteral("document");
    case Symbol::globe:
        return QStringLiteral("globe");
    case Symbol::viewfinder:
        return QStringLiteral("viewfinder");
    case Symbol::window:
        return QStringLiteral("window");
    case Symbol::display:
        return QStringLiteral("display");
    case Symbol::rectangleViewfinder:
        return QStringLiteral("rectangle-viewfinder");
    case Symbol::trayArrow:
        return QStringLiteral("tray-arrow");
    case Symbol::circledArrow:
        return QStringLiteral("circled-arrow");
    case Symbol::lockShield:
        return QStringLiteral("lock-shield");
    case Symbol::copy:
        return QStringLiteral("copy");
    case Symbol::notePlus:
        return QStringLiteral("note-plus");
    case Symbol::twoArrows:
        return QStringLiteral("two-arrows");
    case Symbol::documentArrow:
        return QStringLiteral("document-arrow");
    }
    return {};
}

/// The file of the icon with lines for this size: as the icon grows, its lines grow more slowly.
QByteArray drawing(Symbol symbol, int size)
{
    QFile file(QStringLiteral(":/pithwise/icons/%1.svg").arg(name(symbol)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    if (size > grid) {
        const double width = lineWidth * std::cbrt(static_cast<double>(grid) / size);
        svg.replace(lineAttribute, "stroke-width=\"" + QByteArray::number(width, 'f', 3) + '"');
    }
    return svg;
}

QPixmap rendered(Symbol symbol, int size, qreal scale, const QColor& color)
{
    const int pixels = qRound(size * scale);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(drawing(symbol, size)).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(scale);
    return QPixmap::fromImage(image);
}

/// Draws the icon in the colour that the theme has at the time.
class Engine : public QIconEngine
{
public:
    Engine(Symbol symbol, const Theme& theme, ColorRole role)
        : m_symbol(symbol), m_theme(theme), m_role(role)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const int size = std::min(rect.width(), rect.height());
        const QPoint corner = rect.center() - QPoint((size - 1) / 2, (size - 1) / 2);
        painter->save();
        if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * Drawing::disabledOpacity);
        Icon::paint(*painter, corner, m_symbol, size, m_theme[m_role]);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override
    {
        // Qt gives the size in pixels of the result; from 6.8 on it gives the size before scaling.
        constexpr bool isScaled = QT_VERSION < QT_VERSION_CHECK(6, 8, 0);
        QPixmap result(isScaled ? size : (QSizeF(size) * scale).toSize());
        result.fill(Qt::transparent);
        result.setDevicePixelRatio(scale);
        QPainter painter(&result);
        const QSize area = isScaled ? (QSizeF(size) / scale).toSize() : size;
        paint(&painter, QRect(QPoint(), area), mode, state);
        return result;
    }

    QIconEngine* clone() const override { return new Engine(m_symbol, m_theme, m_role); }

private:
    Symbol m_symbol;
    const Theme& m_theme;
    ColorRole m_role;
};

} // namespace

QPixmap pixmap(Symbol symbol, int size, qreal scale, const QColor& color)
{
    const QString key = QStringLiteral("pithwise-%1-%2-%3-%4")
                            .arg(static_cast<int>(symbol))
                            .arg(size)
                            .arg(scale)
                            .arg(color.rgba(), 0, 16);
    QPixmap result;
    if (!QPixmapCache::find(key, &result)) {
        result = rendered(symbol, size, scale, color);
        QPixmapCache::insert(key, result);
    }
    return result;
}

void paint(QPainter& painter, const QPointF& corner, Symbol symbol, int size, const QColor& color)
{
    const QTransform transform = painter.deviceTransform();
    const QPointF pixel = transform.map(corner).toPoint();
    const qreal scale = std::hypot(transform.m11(), transform.m12());
    painter.drawPixmap(transform.inverted().map(pixel), pixmap(symbol, size, scale, color));
}

QIcon icon(Symbol symbol, const Theme& theme, ColorRole role)
{
    return QIcon(new Engine(symbol, theme, role));
}

} // namespace Icon
