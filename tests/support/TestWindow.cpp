#include "TestWindow.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

template <typename Content>
using Reply = std::unique_ptr<Content, decltype(&std::free)>;

} // namespace

TestWindow::TestWindow(DesktopSession& session, const QRect& area, std::uint32_t colour)
    : m_session(session),
      m_isManaged(session.isManaged()),
      m_connection(xcb_connect(session.display().constData(), nullptr))
{
    if (xcb_connection_has_error(m_connection.get()) != 0)
        throw std::runtime_error("There is no X server.");
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
    m_root = screen->root;
    m_window = xcb_generate_id(m_connection.get());
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_root,
                      static_cast<std::int16_t>(area.x()), static_cast<std::int16_t>(area.y()),
                      static_cast<std::uint16_t>(area.width()),
                      static_cast<std::uint16_t>(area.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen->root_visual, XCB_CW_BACK_PIXEL, &colour);
    // The user's position and size, so that the window manager takes them as they are.
    const auto x = static_cast<std::uint32_t>(area.x());
    const auto y = static_cast<std::uint32_t>(area.y());
    setProperty("WM_NORMAL_HINTS", "WM_SIZE_HINTS",
                {0x3, x, y, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
}

TestWindow::~TestWindow()
{
    // The next window of a test may get the same id. While the manager has not let go of this one,
    // it would take away from that one the properties it has set.
    if (!m_isManaged || !m_session.isRunning())
        return;
    xcb_destroy_window(m_connection.get(), m_window);
    try {
        waitForManager();
    } catch (const std::runtime_error& error) {
        ADD_FAILURE() << error.what();
    }
}

xcb_atom_t TestWindow::atom(const char* name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection.get(), cookie, nullptr), std::free);
    return reply->atom;
}

void TestWindow::setPropertyOf(xcb_window_t window, const char* name, const char* type,
                               const std::vector<std::uint32_t>& values)
{
    // Checked, so that the server has it at the return.
    const auto cookie = xcb_change_property_checked(
        m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32,
        static_cast<std::uint32_t>(values.size()), values.data());
    const Reply<xcb_generic_error_t> error(xcb_request_check(m_connection.get(), cookie),
                                           std::free);
    if (error)
        throw std::runtime_error("The property cannot be set.");
}

void TestWindow::setProperty(const char* name, const char* type,
                             const std::vector<std::uint32_t>& values)
{
    setPropertyOf(m_window, name, type, values);
}

void TestWindow::setRootProperty(const char* name, const char* type,
                                 const std::vector<std::uint32_t>& values)
{
    setPropertyOf(m_root, name, type, values);
}

void TestWindow::setAtoms(const char* property, std::initializer_list<const char*> names)
{
    std::vector<std::uint32_t> atoms;
    for (const char* name : names)
        atoms.push_back(atom((std::string(property) + name).c_str()));
    setProperty(property, "ATOM", atoms);
}

void TestWindow::setTypes(std::initializer_list<const char*> names)
{
    setAtoms("_NET_WM_WINDOW_TYPE", names);
}

void TestWindow::setStates(std::initializer_list<const char*> names)
{
    setAtoms("_NET_WM_STATE", names);
}

void TestWindow::makeUnmanaged()
{
    constexpr std::uint32_t isUnmanaged = 1;
    xcb_change_window_attributes(m_connection.get(), m_window, XCB_CW_OVERRIDE_REDIRECT,
                                 &isUnmanaged);
    m_isManaged = false;
}

void TestWindow::leaveKeyboard()
{
    constexpr std::uint32_t tellsInput = 1; // of the flags; what it is follows
    setProperty("WM_HINTS", "WM_HINTS", {tellsInput, 0, 0, 0, 0, 0, 0, 0, 0});
}

void TestWindow::show()
{
    xcb_map_window(m_connection.get(), m_window);
    m_session.waitUntil("the window is shown", [this] {
        const Reply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(m_connection.get(),
                                            xcb_get_window_attributes(m_connection.get(), m_window),
                                            nullptr),
            std::free);
        return reply->map_state == XCB_MAP_STATE_VIEWABLE &&
               (!m_isManaged || m_session.isListed(m_window));
    });
    if (m_isManaged)
        waitForManager();
}

/// It does one thing after the other: when it tells what the frame of another window would be, it
/// is done with all that came before.
void TestWindow::waitForManager()
{
    const xcb_window_t other = xcb_generate_id(m_connection.get());
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, other, m_root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t question{};
    question.response_type = XCB_CLIENT_MESSAGE;
    question.format = 32;
    question.window = other;
    question.type = atom("_NET_REQUEST_FRAME_EXTENTS");
    xcb_send_event(m_connection.get(), 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&question));
    const xcb_atom_t answer = atom("_NET_FRAME_EXTENTS");
    m_session.waitUntil("the window manager to be done with the window", [&] {
        const Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(
                m_connection.get(),
                xcb_get_property(m_connection.get(), 0, other, answer, XCB_ATOM_ANY, 0, 4),
                nullptr),
            std::free);
        return reply->type != XCB_NONE;
    });
    xcb_destroy_window(m_connection.get(), other);
    xcb_flush(m_connection.get());
}

void TestWindow::grabKeyboard()
{
    m_session.waitUntil("the keyboard is grabbed", [this] {
        const Reply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(m_connection.get(),
                                    xcb_grab_keyboard(m_connection.get(), 0, m_root,
                                                      XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                                      XCB_GRAB_MODE_ASYNC),
                                    nullptr),
            std::free);
        return reply->status == XCB_GRAB_STATUS_SUCCESS;
    });
}

void TestWindow::grabKey(xcb_keycode_t key, std::uint16_t modifiers)
{
    const auto cookie = xcb_grab_key_checked(m_connection.get(), 0, m_root, modifiers, key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_generic_error_t> error(xcb_request_check(m_connection.get(), cookie),
                                           std::free);
    if (error)
        throw std::runtime_error("Another program has the key.");
}
