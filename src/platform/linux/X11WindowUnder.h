#pragma once

#include "X11Connection.h"

#include <cstdint>
#include <optional>

/// What lies under the pointer, on somebody else's connection.
class X11WindowUnder
{
public:
    struct Place
    {
        int x = 0;
        int y = 0;
        xcb_window_t window = XCB_NONE; // of those on the root window
        std::uint16_t modifiers = 0;    // that are held
    };

    explicit X11WindowUnder(X11Connection& connection);

    Place pointer();

    /// The window in `top`, of those on the root window, that the pointer is in and a window
    /// manager manages; `top` where there is none, as on a title bar.
    xcb_window_t managed(xcb_window_t top);

    /// Whether what is under the pointer in `top`, of those on the root window, is this process's.
    bool isOurs(xcb_window_t top);

    /// Whether `top` is nothing that one works in, but helps to write elsewhere: a window that no
    /// window manager manages, as the candidates of input methods, or a panel that leaves the
    /// keyboard to others, as on-screen keyboards.
    bool isAid(xcb_window_t top);

private:
    xcb_window_t childAtPointer(xcb_window_t window);
    bool isManaged(xcb_window_t window);
    bool belongsToUs(xcb_window_t window);
    std::optional<xcb_window_t> managedIn(xcb_window_t window, int levels);
    bool leavesKeyboard(xcb_window_t window);
    bool isFree(xcb_window_t window);

    X11Connection& m_connection;
    xcb_atom_t m_process;
    xcb_atom_t m_state;
    xcb_atom_t m_type;
    xcb_atom_t m_dock;
    xcb_atom_t m_utility;
    xcb_atom_t m_toolbar;
};
