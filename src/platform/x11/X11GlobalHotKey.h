#pragma once

#include "GlobalHotKey.h"
#include "X11Connection.h"
#include "X11Events.h"
#include "X11RawInput.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>

/// Gets the hotkey by a passive grab of the key's code, on a connection of its own.
class X11GlobalHotKey : public GlobalHotKey
{
public:
    /// Null if no X server answers, or if it cannot tell when a key is released.
    static std::unique_ptr<X11GlobalHotKey> create(std::function<void()> pressed);

    bool isGranted() const override { return m_isGranted; }

private:
    X11GlobalHotKey(std::unique_ptr<X11Connection> connection, std::function<void()> pressed);

    std::set<std::uint16_t> findModifiers();
    void grab();
    void handle(const xcb_generic_event_t& event);
    void press(xcb_timestamp_t time);
    void release(xcb_timestamp_t time);
    bool isKeyDown();

    const std::unique_ptr<X11Connection> m_connection;
    const std::function<void()> m_pressed;
    X11RawInput m_input;
    X11Events m_events;
    std::set<std::uint16_t> m_modifiers; // those that the key is grabbed with
    bool m_isGranted = false;
    bool m_isHeld = false;
    xcb_timestamp_t m_released = 0;
};
