#include "X11Connection.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

X11Connection::X11Connection(std::unique_ptr<xcb_connection_t, Disconnect> connection,
                             xcb_screen_t* screen)
    : m_connection(std::move(connection)), m_screen(screen)
{}

std::optional<X11Connection> X11Connection::open()
{
    int number = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    if (screens.rem == 0)
        return std::nullopt;
    return X11Connection(std::move(connection), screens.data);
}

xcb_atom_t X11Connection::atom(const char* name) const
{
    const auto cookie =
        xcb_intern_atom(get(), 1, static_cast<std::uint16_t>(std::strlen(name)), name);
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(get(), cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_get_property_cookie_t X11Connection::request(xcb_window_t window, xcb_atom_t property,
                                                 std::uint32_t most) const
{
    return xcb_get_property(get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most);
}

std::vector<std::uint32_t> X11Connection::values(xcb_get_property_cookie_t request) const
{
    const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(get(), request, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    return {first, first + bytes / sizeof *first};
}

std::string X11Connection::text(xcb_get_property_cookie_t request) const
{
    const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(get(), request, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

double X11Connection::pixelsPerPoint() const
{
    // Where desktops publish the scale, as dots per inch with 96 for a scale of 1.
    const std::string resources =
        "\n" + text(request(screen().root, XCB_ATOM_RESOURCE_MANAGER, 16'384));
    const std::string_view key = "\nXft.dpi:";
    std::size_t begin = resources.find(key);
    if (begin == std::string::npos)
        return 1;
    begin = std::min(resources.find_first_not_of(" \t", begin + key.size()), resources.size());
    double dotsPerInch = 96;
    std::from_chars(resources.data() + begin, resources.data() + resources.size(), dotsPerInch);
    return dotsPerInch > 96 ? std::min(dotsPerInch / 96, 16.0) : 1; // also for "nan"
}
