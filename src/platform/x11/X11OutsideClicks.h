#pragma once

#include "OutsideClicks.h"
#include "X11Connection.h"
#include "X11Events.h"
#include "X11RawInput.h"
#include "X11WindowUnder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

/// The mouse as the X server tells it to whoever asks, on a connection of its own. Also keeps
/// WindowGestures, during a pause as well.
class X11OutsideClicks : public OutsideClicks
{
public:
    X11OutsideClicks(std::unique_ptr<X11Connection> connection, std::function<void()> clicked);
    ~X11OutsideClicks() override;

    /// Whether the X server tells of clicks.
    bool isAvailable() const { return m_input.isAvailable(); }

    void pause() override;
    void resume() override;
    void forget() override;

private:
    struct Press
    {
        std::uint32_t button;
        X11WindowUnder::Place place;
    };

    void listen();
    void handle(const xcb_generic_event_t& event);
    void press(const X11RawInput::Event& event);
    void move();
    void moveTo(const X11WindowUnder::Place& now);
    void release(std::uint32_t button);

    const std::unique_ptr<X11Connection> m_connection;
    const std::function<void()> m_clicked;
    X11RawInput m_input;
    X11Events m_events;
    X11WindowUnder m_under;
    std::optional<Press> m_press; // outside, and no drag so far
    bool m_isPaused = false;
};
