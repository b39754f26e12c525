#pragma once

#include <QRect>
#include <QSize>

/// Where on the desktop the popover goes. Pure functions, in logical pixels.
namespace PopoverPlace {

/// One of the desktop's monitors.
struct Monitor
{
    QRect area;
    QRect workArea; // without panels
};

/// Below the icon and centred on it, above where the icon is in the monitor's lower half, always
/// whole inside the work area; smaller than `size` only where that is.
QRect atIcon(const QRect& icon, const QSize& size, const Monitor& monitor);

/// In the corner where the icons of programs usually are: on the right, at the top unless there is
/// a panel at the bottom only.
QRect inCorner(const QSize& size, const Monitor& monitor);

} // namespace PopoverPlace
