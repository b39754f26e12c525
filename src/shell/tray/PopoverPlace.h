#pragma once

#include <QRect>
#include <QSize>

/// Decides where on the desktop the popover goes. Pure functions, in logical pixels.
namespace PopoverPlace {

/// One of the desktop's monitors.
struct Monitor
{
    QRect area;
    QRect workArea; // without panels
};

/// Below the icon and centred on it; above it if the icon is in the lower half of the monitor.
/// Always whole inside the work area, and smaller than `size` only if the work area is.
QRect atIcon(const QRect& icon, const QSize& size, const Monitor& monitor);

/// In the corner where the icons of programs usually are: at the right, and at the top unless there
/// is a panel only at the bottom.
QRect inCorner(const QSize& size, const Monitor& monitor);

} // namespace PopoverPlace
