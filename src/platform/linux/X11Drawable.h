#pragma once

#include "X11Connection.h"

#include <QImage>
#include <QRect>

#include <optional>

/// The pixels of windows and pixmaps of the X server, in the server's own format.
namespace X11Drawable {

/// The property in which applications that draw their own frame tell how far its shadow reaches.
xcb_atom_t shadowAtom(X11Connection& connection);

struct AreaQuestion
{
    xcb_get_geometry_cookie_t geometry;
    xcb_get_property_cookie_t shadow;
};

/// Asks for the part of `window` that is not shadow; `area` waits for the answer, in pixels and the
/// window's own coordinates. Nothing where the window is gone.
AreaQuestion askArea(X11Connection& connection, xcb_window_t window, xcb_atom_t shadow);
std::optional<QRect> area(X11Connection& connection, const AreaQuestion& question);

/// What `drawable` shows in `area`. Nothing where a part of it cannot be seen, where it has more
/// than 256 megapixels or colours of a kind that no desktop has any more (palettes).
std::optional<QImage> read(X11Connection& connection, xcb_drawable_t drawable, const QRect& area);

/// Copies `image`, of the format that `read` gives for the screen, into `drawable`. Whether the
/// server takes it shows with what is asked of it next.
void write(X11Connection& connection, xcb_drawable_t drawable, xcb_gcontext_t context,
           const QImage& image, QPoint position);

} // namespace X11Drawable
