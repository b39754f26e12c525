#include "SizeLabel.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>

namespace SizeLabel {

QImage render(QSize points, double pixelsPerPoint)
{
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return {};
    const QString text = QString("%1 × %2").arg(points.width()).arg(points.height());
    QFont font;
    font.setPixelSize(qRound(13 * pixelsPerPoint));
    const QFontMetrics metrics(font);
    const int margin = qRound(5 * pixelsPerPoint);
    QImage image(metrics.horizontalAdvance(text) + 2 * margin, metrics.height() + 2 * margin,
                 QImage::Format_RGB32);
    image.fill(QColor(32, 32, 32));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(margin, margin + metrics.ascent(), text);
    return image;
}

} // namespace SizeLabel
