#pragma once

#include "X11Connection.h"

/// Keeps pointer and keyboard from every other program, with crosshairs for a pointer. The focus
/// stays where it is.
class X11InputGrab
{
public:
    /// The connection is kept.
    explicit X11InputGrab(X11Connection& connection);
    ~X11InputGrab();
    X11InputGrab(const X11InputGrab&) = delete;
    X11InputGrab& operator=(const X11InputGrab&) = delete;

    /// Waits for a second where another program has them. False when that was in vain, or something
    /// can be read from `cancelDescriptor`.
    bool take(int cancelDescriptor);

private:
    bool takeKeyboard();
    bool takePointer();

    X11Connection& m_connection;
    xcb_cursor_t m_cursor;
};
