#pragma once

#include "ColorRole.h"
#include "Symbol.h"

#include <QColor>
#include <QIcon>
#include <QPixmap>

class QPainter;
class Theme;

/// The line icons, in any colour and size. Their lines are 1.5 of 16 wide, finer in larger icons.
/// Main thread.
namespace Icon {

/// `size` is in logical pixels, of which each is `scale` pixels of the result.
QPixmap pixmap(Symbol symbol, int size, qreal scale, const QColor& color);

/// Draws the icon with its corner at `corner`, moved to whole pixels so that it is sharp.
void paint(QPainter& painter, const QPointF& corner, Symbol symbol, int size, const QColor& color);

/// An icon that follows `theme`, which must outlive it.
QIcon icon(Symbol symbol, const Theme& theme, ColorRole role);

} // namespace Icon
