#include "X11WindowList.h"

#include "X11Connection.h"
#include "X11Drawable.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

// More than any desktop has. An endless list would be an attack.
constexpr std::uint32_t mostListed = 65'536;
constexpr std::size_t mostWindows = 4'096;
constexpr std::uint32_t mostAtoms = 64; // types, or states, of a window
constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;

/// Types of windows that stay above the ordinary ones.
constexpr std::array upperTypes = {
    "_NET_WM_WINDOW_TYPE_DOCK",       "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_NET_WM_WINDOW_TYPE_SPLASH",     "_NET_WM_WINDOW_TYPE_TOOLBAR",
    "_NET_WM_WINDOW_TYPE_MENU",       "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_TOOLTIP",
    "_NET_WM_WINDOW_TYPE_COMBO",      "_NET_WM_WINDOW_TYPE_DND"};

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

int layer(X11Connection& connection, const std::vector<std::uint32_t>& types,
          const std::vector<std::uint32_t>& states)
{
    // A window names its types in order of preference. Unknown ones are skipped.
    for (const xcb_atom_t type : types) {
        const auto is = [&](const char* name) { return type == connection.atom(name); };
        if (is("_NET_WM_WINDOW_TYPE_NORMAL") || is("_NET_WM_WINDOW_TYPE_DIALOG") ||
            is("_NET_WM_WINDOW_TYPE_UTILITY"))
            break;
        if (is("_NET_WM_WINDOW_TYPE_DESKTOP"))
            return -1;
        if (std::any_of(upperTypes.begin(), upperTypes.end(), is))
            return 1;
    }
    if (contains(states, connection.atom("_NET_WM_STATE_ABOVE")))
        return 1;
    return contains(states, connection.atom("_NET_WM_STATE_BELOW")) ? -1 : 0;
}

/// The questions about one window, all asked before the first answer is waited for.
struct Questions
{
    xcb_get_window_attributes_cookie_t attributes;
    xcb_translate_coordinates_cookie_t position;
    X11Drawable::AreaQuestion area;
    xcb_get_property_cookie_t types, states, workspace, opacity, owner;

    Questions(X11Connection& connection, xcb_window_t window)
        : attributes(xcb_get_window_attributes(connection.get(), window)),
          position(xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)),
          area(X11Drawable::askArea(connection, window)),
          types(connection.askValues(window, connection.atom("_NET_WM_WINDOW_TYPE"), mostAtoms)),
          states(connection.askValues(window, connection.atom("_NET_WM_STATE"), mostAtoms)),
          workspace(connection.askValues(window, connection.atom("_NET_WM_DESKTOP"), 1)),
          opacity(connection.askValues(window, connection.atom("_NET_WM_WINDOW_OPACITY"), 1)),
          owner(connection.askValues(window, connection.atom("_NET_WM_PID"), 1))
    {}
};

class Reader
{
public:
    explicit Reader(X11Connection& connection)
        : m_connection(connection),
          m_workspace(connection.value(connection.root(), "_NET_CURRENT_DESKTOP")),
          m_pixelsPerPoint(connection.pixelsPerPoint()),
          m_screen(0, 0, connection.screen().width_in_pixels, connection.screen().height_in_pixels)
    {}

    /// The windows of `ids` that are on screen, in the same order.
    std::vector<WindowList::Window> read(const std::vector<xcb_window_t>& ids) const
    {
        std::vector<Questions> questions;
        for (const xcb_window_t id : ids)
            questions.emplace_back(m_connection, id);
        std::vector<WindowList::Window> windows;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (const auto window = answer(ids[i], questions[i]))
                windows.push_back(*window);
        }
        return windows;
    }

private:
    std::optional<std::uint32_t> first(xcb_get_property_cookie_t request) const
    {
        const std::vector<std::uint32_t> values = m_connection.values(request);
        return values.empty() ? std::nullopt : std::optional(values.front());
    }

    /// The window `id`, nothing if it is not on screen. Takes every answer, so that none is left
    /// over in the connection.
    std::optional<WindowList::Window> answer(xcb_window_t id, const Questions& questions) const
    {
        const auto attributes =
            m_connection.reply<xcb_get_window_attributes_reply_t>(questions.attributes);
        const auto position =
            m_connection.reply<xcb_translate_coordinates_reply_t>(questions.position);
        const std::optional<QRect> area = X11Drawable::area(m_connection, questions.area);
        const auto types = m_connection.values(questions.types);
        const auto states = m_connection.values(questions.states);
        const auto workspace = first(questions.workspace);
        const auto opacity = first(questions.opacity);
        const auto owner = first(questions.owner);
        // Some window managers keep windows mapped that they do not show.
        const bool isElsewhere =
            workspace && m_workspace && *workspace != everyWorkspace && *workspace != *m_workspace;
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || isElsewhere ||
            contains(states, m_connection.atom("_NET_WM_STATE_HIDDEN")) || !position || !area ||
            !m_screen.intersects(area->translated(position->dst_x, position->dst_y)))
            return std::nullopt;
        WindowList::Window window;
        window.id = id;
        window.layer = layer(m_connection, types, states);
        if (owner && *owner <= std::numeric_limits<pid_t>::max())
            window.owner = static_cast<pid_t>(*owner);
        window.opacity = opacity ? *opacity / double{0xFFFFFFFF} : 1;
        window.width = area->width() / m_pixelsPerPoint;
        window.height = area->height() / m_pixelsPerPoint;
        return window;
    }

    X11Connection& m_connection;
    std::optional<std::uint32_t> m_workspace;
    double m_pixelsPerPoint;
    QRect m_screen;
};

} // namespace

std::vector<WindowList::Window> X11WindowList::windows()
{
    const auto connection = X11Connection::open();
    if (!connection)
        return {};
    const auto list = [&connection](const char* property) {
        return connection->values(
            connection->askValues(connection->root(), connection->atom(property), mostListed));
    };
    std::vector<xcb_window_t> ids = list("_NET_CLIENT_LIST_STACKING"); // the lowest first
    // Xfce's window manager tells no stacking order until it changes for the first time. Up to then
    // it is the order in which the windows have come.
    if (ids.empty())
        ids = list("_NET_CLIENT_LIST");
    std::reverse(ids.begin(), ids.end());
    ids.resize(std::min(ids.size(), mostWindows));
    return Reader(*connection).read(ids);
}
