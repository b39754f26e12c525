#include "X11InputGrab.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace {

constexpr int patience = 1'000; // milliseconds; menus and hot keys let go by then

xcb_cursor_t makeCrosshair(xcb_connection_t* connection)
{
    constexpr std::uint16_t crosshair = 34; // in the server's cursor font; its mask follows it
    constexpr std::uint16_t light = 0xFFFF;
    const xcb_font_t font = xcb_generate_id(connection);
    const auto fontCookie = xcb_open_font_checked(connection, font, 6, "cursor");
    xcb_discard_reply(connection, fontCookie.sequence); // the cursor's own error is enough
    const xcb_cursor_t cursor = xcb_generate_id(connection);
    const auto cookie = xcb_create_glyph_cursor_checked(
        connection, cursor, font, font, crosshair, crosshair + 1, 0, 0, 0, light, light, light);
    const X11Connection::Owned<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    return error ? static_cast<xcb_cursor_t>(XCB_CURSOR_NONE) : cursor;
}

bool canRead(int descriptor, int milliseconds)
{
    pollfd wish = {descriptor, POLLIN, 0};
    return ::poll(&wish, 1, milliseconds) > 0;
}

} // namespace

X11InputGrab::X11InputGrab(X11Connection& connection)
    : m_connection(connection), m_cursor(makeCrosshair(connection.get()))
{}

X11InputGrab::~X11InputGrab()
{
    xcb_ungrab_pointer(m_connection.get(), XCB_CURRENT_TIME);
    xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
}

bool X11InputGrab::take(int cancelDescriptor)
{
    const QDeadlineTimer deadline(patience);
    while (!takeKeyboard() || !takePointer()) {
        if (m_connection.isLost() || deadline.hasExpired() || canRead(cancelDescriptor, 10))
            return false;
    }
    return true;
}

bool X11InputGrab::takeKeyboard()
{
    const auto reply = m_connection.reply<xcb_grab_keyboard_reply_t>(
        xcb_grab_keyboard(m_connection.get(), 0, m_connection.root(), XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11InputGrab::takePointer()
{
    const std::uint16_t events =
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
    // The root window is always there to be grabbed on.
    const auto reply = m_connection.reply<xcb_grab_pointer_reply_t>(
        xcb_grab_pointer(m_connection.get(), 0, m_connection.root(), events, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, XCB_NONE, m_cursor, XCB_CURRENT_TIME));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}
