#include "TextImage.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace TextImage {

QImage render(const QStringList& lines, const Look& look)
{
    QFont font(look.family);
    font.setPixelSize(look.pixelSize);
    const QFontMetrics metrics(font);
    const int margin = 2 * look.pixelSize;
    int width = 0;
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    QImage image(width + 2 * margin,
                 metrics.lineSpacing() * static_cast<int>(lines.size()) + 2 * margin,
                 QImage::Format_ARGB32);
    image.fill(look.ground);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(look.ink);
    int baseline = margin + metrics.ascent();
    for (const QString& line : lines) {
        painter.drawText(margin, baseline, line);
        baseline += metrics.lineSpacing();
    }
    return image;
}

QImage render(const QStringList& lines)
{
    return render(lines, Look{});
}

} // namespace TextImage
