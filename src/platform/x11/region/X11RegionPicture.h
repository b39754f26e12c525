#pragma once

#include "RegionGesture.h"
#include "X11Connection.h"

#include <QImage>

/// What the user sees while selecting: the screen, dimmed, with the chosen rectangle bright and its
/// size beside the pointer. It is a window above everything, which the window manager does not
/// touch.
class X11RegionPicture
{
public:
    /// `screen` is what X11Drawable::read() gives for the whole screen. Requires: `connection`
    /// outlives this object.
    X11RegionPicture(X11Connection& connection, const QImage& screen);
    /// Returns once the window is gone from the screen.
    ~X11RegionPicture();
    X11RegionPicture(const X11RegionPicture&) = delete;
    X11RegionPicture& operator=(const X11RegionPicture&) = delete;

    void show() const;

    /// Shows the gesture's rectangle; redraws only what has changed.
    void update(const RegionGesture& gesture);

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
    xcb_pixmap_t m_bright; // pixmaps are freed with the connection
    xcb_pixmap_t m_dim;
    xcb_pixmap_t m_frame; // what the window shows
    xcb_window_t m_window;
    QRect m_drawn; // where m_frame differs from m_dim
};
