#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct X11Free
{
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, an event or an error, which the library leaves to us to free; none after an error.
template <typename Content>
using X11Reply = std::unique_ptr<Content, X11Free>;

/// A connection of our own to the X server, to its default screen. Whatever the server or another
/// client does, at worst there are no replies. One thread at a time.
class X11Connection
{
public:
    /// Nothing where there is no server.
    static std::optional<X11Connection> open();

    xcb_connection_t* get() const { return m_connection.get(); }
    const xcb_screen_t& screen() const { return *m_screen; }

    /// XCB_ATOM_NONE where nobody uses it yet.
    xcb_atom_t atom(const char* name) const;

    /// Asks for the first `most` 32-bit values of a property, or 4 * `most` bytes.
    xcb_get_property_cookie_t request(xcb_window_t window, xcb_atom_t property,
                                      std::uint32_t most) const;

    /// The reply to `request`: empty where the property is not there or not of 32-bit values.
    std::vector<std::uint32_t> values(xcb_get_property_cookie_t request) const;

    /// The reply to `request` where the property is a text.
    std::string text(xcb_get_property_cookie_t request) const;

    /// How many pixels the desktop's settings give a point, at least 1.
    double pixelsPerPoint() const;

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    explicit X11Connection(std::unique_ptr<xcb_connection_t, Disconnect> connection,
                           xcb_screen_t* screen);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_screen_t* m_screen; // part of the connection
};
