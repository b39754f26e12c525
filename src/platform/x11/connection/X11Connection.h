#pragma once

#include "Release.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A connection of our own to the X server and its default screen. No call waits longer than it is
/// told to. Whatever the server or another client does, the worst is that answers are missing. Once
/// the connection is lost, every call ends at once with nothing. One thread at a time.
class X11Connection
{
public:
    using Clock = std::chrono::steady_clock;
    using Deadline = Clock::time_point;
    /// For questions that the X server itself answers: if it hangs, so does the whole desktop.
    static constexpr Deadline never = Deadline::max();

    /// Owns a reply, an event or an error; the library leaves it to us to free them.
    template <typename Content>
    using Owned = std::unique_ptr<Content, Release<std::free>>;
    using Event = Owned<xcb_generic_event_t>;

    struct Property
    {
        xcb_atom_t type;
        std::uint8_t format; // bits of a unit: 8, 16 or 32
        std::string bytes;
    };
    enum class Afterwards { keep, remove };

    /// Connects. Null if no X server answers. Any thread.
    static std::unique_ptr<X11Connection> open();

    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    xcb_connection_t* get() const { return m_connection; }
    const xcb_screen_t& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }

    /// What the server says of an extension, null if it does not have it.
    const xcb_query_extension_reply_t* extension(xcb_extension_t& id) const;

    /// Readies the extension that tells who takes a selection. False if the server does not have
    /// it.
    bool startFixes(Deadline deadline = never);

    bool isLost() const { return xcb_connection_has_error(m_connection) != 0; }

    /// Whether two windows or other resources were made by the same program.
    bool isSameClient(xcb_window_t one, xcb_window_t other) const;

    /// How many pixels make a point by the desktop's settings: 1 to 16.
    double pixelsPerPoint();

    /// Waits for the answer to a request. Null at the deadline, and upon an error.
    template <typename Reply, typename Cookie>
    Owned<Reply> reply(Cookie cookie, Deadline deadline = never)
    {
        return Owned<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence, deadline)));
    }

    /// Returns once the server has done all that it was asked for on this connection, or at the
    /// deadline.
    void finish(Deadline deadline = never);

    /// Sends pending requests, then waits for the next event. Null at the deadline.
    Event nextEvent(Deadline deadline);
    /// The next event that has already come, null if there is none. Neither waits nor sends pending
    /// requests.
    Event pendingEvent();
    /// How many events came while another answer was waited for, and have not been taken yet.
    std::size_t waitingEvents() const { return m_events.size(); }

    /// Makes an invisible window for which PropertyNotify events come.
    xcb_window_t createWindow();

    /// The atom with this name, XCB_NONE if it cannot be had. The server is asked once.
    xcb_atom_t atom(std::string_view name, Deadline deadline = never);
    std::string atomName(xcb_atom_t atom, Deadline deadline);

    /// A property of at most `maximumBytes`. Nothing if there is none, or if it is longer.
    std::optional<Property> property(xcb_window_t window, xcb_atom_t name, std::size_t maximumBytes,
                                     Deadline deadline, Afterwards afterwards = Afterwards::keep);

    /// Asks for the first `most` values of a property; values() waits for them. They are empty if
    /// the property is not there or does not have 32-bit values.
    xcb_get_property_cookie_t askValues(xcb_window_t window, xcb_atom_t property,
                                        std::uint32_t most) const;
    std::vector<std::uint32_t> values(xcb_get_property_cookie_t question,
                                      Deadline deadline = never);
    /// The first value of a property; window managers may add others.
    std::optional<std::uint32_t> value(xcb_window_t window, std::string_view property,
                                       Deadline deadline = never);

    /// Replaces a property by such values. Does not wait.
    void setValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                   std::span<const std::uint32_t> values) const;

    /// The window that has the selection, XCB_NONE if none has. Nothing if the server does not
    /// answer before the deadline.
    std::optional<xcb_window_t> selectionOwner(xcb_atom_t selection, Deadline deadline = never);

private:
    X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen);
    void* waitForReply(unsigned int sequence, Deadline deadline);
    bool waitForInput(Deadline deadline);

    xcb_connection_t* m_connection;
    const xcb_screen_t* m_screen;                           // part of the connection
    std::deque<Event> m_events;                             // read while waiting for an answer
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms; // those that are known
};
