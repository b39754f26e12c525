#pragma once

#include "X11Connection.h"

#include <QImage>
#include <QRect>

#include <optional>

/// The pixels of windows and pixmaps of the X server, in the server's own format.
namespace X11Drawable {

struct AreaQuestion
{
    xcb_get_geometry_cookie_t geometry;
    xcb_get_property_cookie_t shadow;
};

/// Asks for the part of `window` that is not shadow. area() waits for the answer, which is in
/// pixels and in the window's own coordinates. Nothing if the window is gone.
AreaQuestion askArea(X11Connection& connection, xcb_window_t window);
std::optional<QRect> area(X11Connection& connection, const AreaQuestion& question);

/// What `drawable` shows in `area`. Nothing if a part of it cannot be seen, if it has more than 256
/// megapixels, or if it has a kind of colours that no desktop has any more (palettes).
std::optional<QImage> read(X11Connection& connection, xcb_drawable_t drawable, const QRect& area);

/// Copies `image` into `drawable`. The image must have the format that read() gives for the screen.
/// Does not wait: a failure shows only with the next question to the server.
void write(X11Connection& connection, xcb_drawable_t drawable, xcb_gcontext_t context,
           const QImage& image, QPoint position);

} // namespace X11Drawable
