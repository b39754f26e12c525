#pragma once

#include "X11Connection.h"

#include <QImage>

#include <optional>

/// Lets the user drag out a rectangle of the screen. The screen is dimmed; the rectangle is bright
/// and shows its size. Escape and the right button cancel. Meanwhile the pointer and the keyboard
/// are ours, but the keyboard focus stays where it is.
namespace X11RegionOverlay {

/// The chosen part of `screen`, a picture of the whole screen. Nothing if the user cancels,
/// something can be read from `cancelDescriptor`, another program holds the pointer or the
/// keyboard, another region is being chosen in this process, or the X server is gone. Blocks; any
/// thread.
std::optional<QImage> select(X11Connection& connection, const QImage& screen, int cancelDescriptor);

} // namespace X11RegionOverlay
