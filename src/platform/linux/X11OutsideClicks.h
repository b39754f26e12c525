#pragma once

#include "OutsideClicks.h"
#include "X11Connection.h"
#include "X11Events.h"
#include "X11RawInput.h"

#include <cstdint>
#include <functional>
#include <memory>

/// The mouse as the X server tells it to whoever asks, on a connection of its own.
class X11OutsideClicks : public OutsideClicks
{
public:
    /// Null where no X server answers or it does not tell.
    static std::unique_ptr<X11OutsideClicks> create(std::function<void()> pressed);

    void pause() override;
    void resume() override;

private:
    X11OutsideClicks(std::unique_ptr<X11Connection> connection, std::function<void()> pressed);

    void select(std::uint32_t mask);
    void handle(const xcb_generic_event_t& event);
    bool isPointerOnOurs();
    xcb_window_t childAtPointer(xcb_window_t window);
    bool isOurs(xcb_window_t window);
    bool isFrameOfOurs(xcb_window_t window, int levels);

    const std::unique_ptr<X11Connection> m_connection;
    const std::function<void()> m_pressed;
    X11RawInput m_input;
    X11Events m_events;
    xcb_atom_t m_processProperty;
    xcb_atom_t m_stateProperty;
    bool m_isPaused = false;
};
