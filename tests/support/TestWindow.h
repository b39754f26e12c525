#pragma once

#include "DesktopSession.h"

#include <QRect>

#include <xcb/xcb.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

/// A window of one colour and with the properties a test wants, of a client of its own.
class TestWindow
{
public:
    /// `area` is in pixels, without the frame. It is not shown yet.
    explicit TestWindow(DesktopSession& session, const QRect& area = {100, 100, 300, 200},
                        std::uint32_t colour = 0xFFFFFF);

    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    std::uint32_t id() const { return m_window; }

    /// 32-bit values; of the type CARDINAL, ATOM, ...
    void setProperty(const char* name, const char* type, const std::vector<std::uint32_t>& values);
    void setRootProperty(const char* name, const char* type,
                         const std::vector<std::uint32_t>& values);

    /// Names of _NET_WM_WINDOW_TYPE_* and _NET_WM_STATE_*.
    void setTypes(std::initializer_list<const char*> names);
    void setStates(std::initializer_list<const char*> names);
    /// Window managers leave it alone. For one that is not shown yet.
    void makeUnmanaged();
    /// As a program that does not want the keyboard.
    void leaveKeyboard();
    void setOwner(std::uint32_t process) { setProperty("_NET_WM_PID", "CARDINAL", {process}); }

    /// Shows it and waits until the server does and the window manager is done with it.
    void show();

    /// Keeps the keyboard from everyone else until the window ends.
    void grabKeyboard();

    /// Has a hotkey of its own, until the window ends. Throws where another program has it.
    void grabKey(xcb_keycode_t key, std::uint16_t modifiers);

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void waitForManager();
    xcb_atom_t atom(const char* name) const;
    void setPropertyOf(xcb_window_t window, const char* name, const char* type,
                       const std::vector<std::uint32_t>& values);
    void setAtoms(const char* property, std::initializer_list<const char*> names);

    DesktopSession& m_session;
    bool m_isManaged;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
};
