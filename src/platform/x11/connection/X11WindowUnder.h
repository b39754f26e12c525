#pragma once

#include "X11Connection.h"

#include <cstdint>
#include <optional>

/// Tells what window lies under the pointer. Uses a connection that outlives it.
class X11WindowUnder
{
public:
    struct Place
    {
        int x = 0;
        int y = 0;
        xcb_window_t window = XCB_NONE; // a child of the root window
        std::uint16_t modifiers = 0;    // that are held
    };

    explicit X11WindowUnder(X11Connection& connection) : m_connection(connection) {}

    Place pointer();

    /// The window that a window manager manages and the pointer is in. `top` is the child of the
    /// root window that the pointer is in; it is the answer if there is no such window, as on a
    /// title bar.
    xcb_window_t managed(xcb_window_t top);

    /// Whether the pointer is on a window of this process. `top` is the child of the root window
    /// that the pointer is in.
    bool isOurs(xcb_window_t top);

    /// Whether `top`, a child of the root window, only helps to write elsewhere. It may be a window
    /// that no window manager manages, such as the candidates of an input method, or a panel that
    /// leaves the keyboard to others, such as an on-screen keyboard.
    bool isAid(xcb_window_t top);

private:
    xcb_window_t childAtPointer(xcb_window_t window);
    bool isManaged(xcb_window_t window);
    bool belongsToUs(xcb_window_t window);
    std::optional<xcb_window_t> managedIn(xcb_window_t window, int levels);
    bool leavesKeyboard(xcb_window_t window);
    bool isFree(xcb_window_t window);

    X11Connection& m_connection;
};
