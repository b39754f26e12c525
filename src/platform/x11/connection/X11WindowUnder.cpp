#include "X11WindowUnder.h"

#include <unistd.h>

#include <cstdint>
#include <vector>

static constexpr int frameLevels = 2; // window managers nest frames no deeper

X11WindowUnder::Place X11WindowUnder::pointer()
{
    const auto pointer = m_connection.reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection.get(), m_connection.root()));
    return pointer ? Place{pointer->root_x, pointer->root_y, pointer->child, pointer->mask}
                   : Place{};
}

xcb_window_t X11WindowUnder::childAtPointer(xcb_window_t window)
{
    const auto pointer = m_connection.reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection.get(), window));
    return pointer ? pointer->child : static_cast<xcb_window_t>(XCB_NONE);
}

xcb_window_t X11WindowUnder::managed(xcb_window_t top)
{
    for (xcb_window_t window = top; window != XCB_NONE; window = childAtPointer(window)) {
        if (isManaged(window))
            return window;
    }
    return top;
}

bool X11WindowUnder::isOurs(xcb_window_t top)
{
    // A window of ours may be in a frame of the window manager's, or in a panel.
    for (xcb_window_t window = top; window != XCB_NONE; window = childAtPointer(window)) {
        if (belongsToUs(window))
            return true;
    }
    // The pointer may be on the frame around a window of ours. The window manager has given such a
    // window a state. An icon of ours in a panel has none, so the rest of the panel is not ours.
    const auto managed = managedIn(top, frameLevels);
    return managed && belongsToUs(*managed);
}

bool X11WindowUnder::isAid(xcb_window_t top)
{
    if (top == XCB_NONE)
        return false;
    const auto managed = managedIn(top, frameLevels);
    return managed ? leavesKeyboard(*managed) : isFree(top);
}

/// Window managers give such a window a state.
bool X11WindowUnder::isManaged(xcb_window_t window)
{
    return m_connection.value(window, "WM_STATE").has_value();
}

bool X11WindowUnder::belongsToUs(xcb_window_t window)
{
    return m_connection.value(window, "_NET_WM_PID") == static_cast<std::uint32_t>(::getpid());
}

/// The window that the window manager manages: `window` itself, or one in it if it is a frame.
/// Looks `levels` deep.
std::optional<xcb_window_t> X11WindowUnder::managedIn(xcb_window_t window, int levels)
{
    if (isManaged(window))
        return window;
    const auto tree =
        m_connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection.get(), window));
    if (!tree || levels == 0)
        return std::nullopt;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (const auto managed = managedIn(children[i], levels - 1))
            return managed;
    }
    return std::nullopt;
}

bool X11WindowUnder::leavesKeyboard(xcb_window_t window)
{
    constexpr std::uint32_t tellsInput = 1; // this flag says that the second value counts
    const auto type = m_connection.value(window, "_NET_WM_WINDOW_TYPE");
    const std::vector<std::uint32_t> hints =
        m_connection.values(m_connection.askValues(window, XCB_ATOM_WM_HINTS, 2));
    const bool isPanel = type == m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK") ||
                         type == m_connection.atom("_NET_WM_WINDOW_TYPE_UTILITY") ||
                         type == m_connection.atom("_NET_WM_WINDOW_TYPE_TOOLBAR");
    return isPanel && hints.size() == 2 && (hints[0] & tellsInput) != 0 && hints[1] == 0;
}

/// Whether `window` can be seen and no window manager manages it. One over the whole screen does
/// not count: compositors have such a window for the desktop.
bool X11WindowUnder::isFree(xcb_window_t window)
{
    const auto attributesQuestion = xcb_get_window_attributes(m_connection.get(), window);
    const auto areaQuestion = xcb_get_geometry(m_connection.get(), window);
    const auto attributes =
        m_connection.reply<xcb_get_window_attributes_reply_t>(attributesQuestion);
    const auto area = m_connection.reply<xcb_get_geometry_reply_t>(areaQuestion);
    if (!attributes || !area)
        return false;
    const xcb_screen_t& screen = m_connection.screen();
    const bool isWhole =
        area->width >= screen.width_in_pixels && area->height >= screen.height_in_pixels;
    return attributes->override_redirect != 0 &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT && !isWhole;
}
