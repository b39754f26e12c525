#include "X11OutsideClicks.h"

#include "WindowGestures.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

constexpr std::uint32_t left = 1;
constexpr std::uint32_t right = 3;

X11OutsideClicks::X11OutsideClicks(std::unique_ptr<X11Connection> connection,
                                   std::function<void()> clicked)
    : m_connection(std::move(connection)),
      m_clicked(std::move(clicked)),
      m_input(*m_connection),
      m_events(*m_connection, [this](const xcb_generic_event_t& event) { handle(event); }),
      m_under(*m_connection)
{
    if (m_input.isAvailable())
        listen();
}

X11OutsideClicks::~X11OutsideClicks()
{
    WindowGestures::shared().forget();
}

/// Motion is told a thousand times a second by some mice, so only while it matters.
void X11OutsideClicks::listen()
{
    std::uint32_t mask =
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    if (m_press)
        mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    m_input.select(mask);
    m_events.flush();
}

void X11OutsideClicks::pause()
{
    m_isPaused = true;
    m_press.reset();
    listen();
}

void X11OutsideClicks::resume()
{
    m_events.takeAll(); // of the pause
    m_isPaused = false;
    listen();
}

void X11OutsideClicks::forget()
{
    m_press.reset();
    const bool wasPaused = std::exchange(m_isPaused, true);
    m_events.takeAll();
    m_isPaused = wasPaused;
    listen();
}

void X11OutsideClicks::handle(const xcb_generic_event_t& event)
{
    const auto raw = m_input.read(event);
    if (!raw)
        return;
    const bool isOfButton = raw->detail == left || raw->detail == right;
    if (raw->type == XCB_INPUT_RAW_BUTTON_PRESS && isOfButton)
        press(*raw);
    else if (raw->type == XCB_INPUT_RAW_MOTION)
        move();
    else if (raw->type == XCB_INPUT_RAW_BUTTON_RELEASE && isOfButton)
        release(raw->detail);
}

/// Such an event does not say where it happened, but the pointer will be there still.
void X11OutsideClicks::press(const X11RawInput::Event& event)
{
    const X11WindowUnder::Place place = m_under.pointer();
    WindowGestures::shared().press({m_under.managed(place.window), event.detail, event.time,
                                    place.x, place.y, place.modifiers});
    m_press.reset();
    if (!m_isPaused && !m_under.isOurs(place.window) && !m_under.isAid(place.window))
        m_press = {event.detail, place};
    listen();
}

void X11OutsideClicks::move()
{
    if (m_press)
        moveTo(m_under.pointer());
}

/// Requires: a button is held.
void X11OutsideClicks::moveTo(const X11WindowUnder::Place& now)
{
    // Fewer than any program waits for before it lets something be dragged.
    constexpr int slack = 5; // pixels
    if (std::max(std::abs(now.x - m_press->place.x), std::abs(now.y - m_press->place.y)) <= slack)
        return;
    m_press.reset();
    listen();
}

void X11OutsideClicks::release(std::uint32_t button)
{
    const X11WindowUnder::Place place = m_under.pointer();
    WindowGestures::shared().release(button, place.x, place.y);
    if (!m_press || m_press->button != button)
        return;
    moveTo(place); // what has been told of the way so far may not be all of it
    if (!m_press)
        return;
    m_press.reset();
    listen();
    m_clicked();
}
