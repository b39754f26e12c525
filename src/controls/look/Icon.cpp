#include "Icon.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>
#include <cmath>

namespace Icon {

namespace {

/// The size that the files are drawn for, and the attribute that has the width of their lines.
constexpr int grid = 16;
constexpr double lineWidth = 1.5;
constexpr const char* lineAttribute = "stroke-width=\"1.5\"";

/// The names of the files, in the order of the symbols.
constexpr std::array names = {
    "quotation",  "clipboard",     "document",      "globe",
    "viewfinder", "window",        "display",       "rectangle-viewfinder",
    "tray-arrow", "circled-arrow", "lock-shield",   "copy",
    "note-plus",  "two-arrows",    "document-arrow"};

/// The file of the icon with lines for this size: as the icon grows, its lines grow more slowly.
QByteArray drawing(Symbol symbol, int size)
{
    const char* const name = names.at(static_cast<std::size_t>(symbol));
    QFile file(QStringLiteral(":/pithwise/icons/%1.svg").arg(QLatin1String(name)));
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

} // namespace Icon
