#pragma once

#include "Symbol.h"

#include <QColor>
#include <QPixmap>

class QPainter;

/// Draws the line icons in any colour and size. In an icon of 16 pixels lines are 1.5 wide; in
/// larger icons they are relatively finer. Main thread.
namespace Icon {

/// The icon as a picture. `size` is in logical pixels; each is `scale` pixels of the picture.
QPixmap pixmap(Symbol symbol, int size, qreal scale, const QColor& color);

/// Draws the icon with its top left corner at `corner`, moved to whole pixels so that it is sharp.
/// `size` is in logical pixels.
void paint(QPainter& painter, const QPointF& corner, Symbol symbol, int size, const QColor& color);

} // namespace Icon
