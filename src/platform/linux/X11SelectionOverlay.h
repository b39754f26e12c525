#pragma once

#include "X11Connection.h"

#include <QImage>

#include <optional>

/// Lets the user drag a rectangle out of the screen: it is dimmed, the rectangle is bright and
/// bears its size. Escape and the right button cancel. The pointer and the keyboard are ours
/// meanwhile, but the focus stays where it is.
namespace X11SelectionOverlay {

/// The part of `screen`, the picture of the whole screen, that was chosen; nothing where the user
/// cancels, something can be read from `cancelDescriptor`, another program holds the pointer or the
/// keyboard, another selection is under way in this process, or the X server is gone. Blocks; any
/// thread.
std::optional<QImage> select(X11Connection& connection, const QImage& screen, int cancelDescriptor);

} // namespace X11SelectionOverlay
