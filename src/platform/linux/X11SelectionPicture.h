#pragma once

#include "SelectionGesture.h"
#include "X11Connection.h"

#include <QImage>

/// What is seen while the user selects: the screen, dimmed, with the chosen rectangle as it was and
/// its size beside the pointer. In a window over everything that the window manager does not touch.
class X11SelectionPicture
{
public:
    /// `screen` is what X11Drawable::read gives for the whole screen. The connection is kept.
    X11SelectionPicture(X11Connection& connection, const QImage& screen);
    /// Returns once it is gone from the screen.
    ~X11SelectionPicture();
    X11SelectionPicture(const X11SelectionPicture&) = delete;
    X11SelectionPicture& operator=(const X11SelectionPicture&) = delete;

    void show() const;

    /// Redraws what differs from the rectangle drawn before.
    void update(const SelectionGesture& gesture);

private:
    xcb_pixmap_t makePixmap() const;
    void makeWindow() const;
    QRect draw(const QRect& rectangle, QPoint pointer) const;
    QRect drawLabel(QSize size, QPoint pointer) const;
    void copy(xcb_drawable_t from, xcb_drawable_t to, const QRect& area) const;
    void fill(const QRect& area) const;

    X11Connection& m_connection;
    QImage::Format m_format;
    QRect m_area;
    double m_pixelsPerPoint;
    xcb_gcontext_t m_context;
    xcb_pixmap_t m_bright; // the pixmaps end with the connection
    xcb_pixmap_t m_dim;
    xcb_pixmap_t m_frame; // what the window shows
    xcb_window_t m_window;
    QRect m_drawn; // where the frame is not just dim
};
