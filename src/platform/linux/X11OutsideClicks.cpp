#include "X11OutsideClicks.h"

#include <unistd.h>

#include <cstdint>
#include <utility>
#include <vector>

std::unique_ptr<X11OutsideClicks> X11OutsideClicks::create(std::function<void()> pressed)
{
    auto connection = X11Connection::open();
    if (!connection)
        return nullptr;
    std::unique_ptr<X11OutsideClicks> clicks(
        new X11OutsideClicks(std::move(connection), std::move(pressed)));
    return clicks->m_input.isAvailable() ? std::move(clicks) : nullptr;
}

X11OutsideClicks::X11OutsideClicks(std::unique_ptr<X11Connection> connection,
                                   std::function<void()> pressed)
    : m_connection(std::move(connection)),
      m_pressed(std::move(pressed)),
      m_input(*m_connection),
      m_events(*m_connection, [this](const xcb_generic_event_t& event) { handle(event); }),
      m_processProperty(m_connection->atom("_NET_WM_PID"))
{
    if (m_input.isAvailable())
        resume();
}

void X11OutsideClicks::pause()
{
    m_isPaused = true; // some may be on their way
    m_input.select(0);
    m_events.flush();
}

void X11OutsideClicks::resume()
{
    m_isPaused = false;
    m_input.select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    m_events.flush();
}

void X11OutsideClicks::handle(const xcb_generic_event_t& event)
{
    constexpr std::uint32_t left = 1;
    constexpr std::uint32_t right = 3;
    const auto raw = m_input.read(event);
    if (!raw || raw->type != XCB_INPUT_RAW_BUTTON_PRESS || m_isPaused)
        return;
    if ((raw->detail == left || raw->detail == right) && !isPointerOnOurs())
        m_pressed();
}

/// Such an event does not say where it happened, but the pointer will be there still. A window of
/// ours may be in a frame of the window manager's, or in a panel.
bool X11OutsideClicks::isPointerOnOurs()
{
    xcb_window_t window = m_connection->root();
    while (window != XCB_NONE) {
        const auto pointer = m_connection->reply<xcb_query_pointer_reply_t>(
            xcb_query_pointer(m_connection->get(), window));
        window = pointer ? pointer->child : static_cast<xcb_window_t>(XCB_NONE);
        if (window != XCB_NONE && isOurs(window))
            return true;
    }
    return false;
}

bool X11OutsideClicks::isOurs(xcb_window_t window)
{
    const std::vector<std::uint32_t> process =
        m_connection->values(m_connection->askValues(window, m_processProperty, 1));
    return !process.empty() && process[0] == static_cast<std::uint32_t>(::getpid());
}
