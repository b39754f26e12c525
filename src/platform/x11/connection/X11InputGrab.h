#pragma once

#include "X11Connection.h"

/// While alive, keeps the pointer and the keyboard from every other program, and shows the pointer
/// as crosshairs. The keyboard focus stays where it is.
class X11InputGrab
{
public:
    /// Requires: `connection` outlives this object.
    explicit X11InputGrab(X11Connection& connection);
    ~X11InputGrab();
    X11InputGrab(const X11InputGrab&) = delete;
    X11InputGrab& operator=(const X11InputGrab&) = delete;

    /// Takes the pointer and the keyboard. If another program has them, tries for a second. Returns
    /// false if that fails, or as soon as something can be read from `cancelDescriptor`.
    bool take(int cancelDescriptor);

private:
    bool takeKeyboard();
    bool takePointer();

    X11Connection& m_connection;
    xcb_cursor_t m_cursor;
};
