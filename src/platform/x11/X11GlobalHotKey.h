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
    X11GlobalHotKey(std::unique_ptr<X11Connection> connection, std::function<void()> pressed);

    /// Whether the X server can tell when a key is released.
    bool isAvailable() const { return m_input.isAvailable(); }
    bool isGranted() const override { return m_isGranted; }

private:
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
