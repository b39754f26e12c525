#include "X11OutsideClicks.h"

#include <unistd.h>

#include <algorithm>
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
      m_processProperty(m_connection->atom("_NET_WM_PID")),
      m_stateProperty(m_connection->atom("WM_STATE"))
{
    if (m_input.isAvailable())
        select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
}

void X11OutsideClicks::select(std::uint32_t mask)
{
    m_input.select(mask);
    m_events.flush();
}

void X11OutsideClicks::pause()
{
    m_isPaused = true; // some may be on their way
    select(0);
}

void X11OutsideClicks::resume()
{
    m_isPaused = false;
    select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
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

/// Such an event does not say where it happened, but the pointer will be there still.
bool X11OutsideClicks::isPointerOnOurs()
{
    const xcb_window_t top = childAtPointer(m_connection->root());
    // A window of ours may be in a frame of the window manager's, or in a panel.
    for (xcb_window_t window = top; window != XCB_NONE; window = childAtPointer(window)) {
        if (isOurs(window))
            return true;
    }
    constexpr int levels = 2; // as deep as window managers put windows in frames
    return isFrameOfOurs(top, levels);
}

xcb_window_t X11OutsideClicks::childAtPointer(xcb_window_t window)
{
    const auto pointer = m_connection->reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection->get(), window));
    return pointer ? pointer->child : static_cast<xcb_window_t>(XCB_NONE);
}

bool X11OutsideClicks::isOurs(xcb_window_t window)
{
    const std::vector<std::uint32_t> process =
        m_connection->values(m_connection->askValues(window, m_processProperty, 1));
    return !process.empty() && process[0] == static_cast<std::uint32_t>(::getpid());
}

/// Unlike an icon in a panel, a window in a frame has a state that the window manager gave it.
bool X11OutsideClicks::isFrameOfOurs(xcb_window_t window, int levels)
{
    const auto tree =
        m_connection->reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection->get(), window));
    if (!tree)
        return false;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + tree->children_len, [&](xcb_window_t child) {
        if (isOurs(child))
            return !m_connection->values(m_connection->askValues(child, m_stateProperty, 1))
                        .empty();
        return levels > 1 && isFrameOfOurs(child, levels - 1);
    });
}
