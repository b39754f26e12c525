#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A connection of our own to the X server, to its default screen, on which nothing waits longer
/// than it is told to. Whatever the server or another client does, at worst there are no answers;
/// when the connection is lost, every call ends at once with nothing. One thread at a time.
class X11Connection
{
public:
    using Clock = std::chrono::steady_clock;
    using Deadline = Clock::time_point;
    /// For what only the X server answers: where it hangs, so does the whole desktop.
    static constexpr Deadline never = Deadline::max();

    struct Free
    {
        void operator()(void* memory) const { std::free(memory); }
    };
    /// A reply, an event or an error, which the library leaves to us to free.
    template <typename Content>
    using Owned = std::unique_ptr<Content, Free>;
    using Event = Owned<xcb_generic_event_t>;

    struct Property
    {
        xcb_atom_t type;
        std::uint8_t format; // bits of a unit: 8, 16 or 32
        std::string bytes;
    };
    enum class Afterwards { keep, remove };

    /// Null where no X server answers. Any thread.
    static std::unique_ptr<X11Connection> open();

    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    xcb_connection_t* get() const { return m_connection; }
    const xcb_screen_t& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }

    bool isLost() const { return xcb_connection_has_error(m_connection) != 0; }

    /// Whether two windows or other resources were made by the same program.
    bool isSameClient(xcb_window_t one, xcb_window_t other) const;

    /// How many pixels the desktop's settings give a point, at least 1.
    double pixelsPerPoint();

    /// The answer to a request; null at the deadline, and upon an error.
    template <typename Reply, typename Cookie>
    Owned<Reply> reply(Cookie cookie, Deadline deadline = never)
    {
        return Owned<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence, deadline)));
    }

    /// Returns once the server has done all it was asked for, or at the deadline.
    void finish(Deadline deadline = never);

    /// The next event, in order; null at the deadline.
    Event nextEvent(Deadline deadline);
    /// The same without waiting, nor sending what is to be sent.
    Event pendingEvent();
    /// How many events have come while something else was waited for.
    std::size_t waitingEvents() const { return m_events.size(); }

    /// An invisible window that gets PropertyNotify.
    xcb_window_t createWindow();

    /// XCB_NONE where it cannot be had.
    xcb_atom_t atom(std::string_view name, Deadline deadline = never);
    std::string atomName(xcb_atom_t atom, Deadline deadline);

    /// A property of at most `maximumBytes`. Nothing where there is none or a longer one.
    std::optional<Property> property(xcb_window_t window, xcb_atom_t name, std::size_t maximumBytes,
                                     Deadline deadline, Afterwards afterwards = Afterwards::keep);

    /// Asks for the first `most` values of a property, and waits for them: empty where it is not
    /// there or not of 32-bit values.
    xcb_get_property_cookie_t askValues(xcb_window_t window, xcb_atom_t property,
                                        std::uint32_t most) const;
    std::vector<std::uint32_t> values(xcb_get_property_cookie_t question,
                                      Deadline deadline = never);

private:
    X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen);
    void* waitForReply(unsigned int sequence, Deadline deadline);
    bool waitForInput(Deadline deadline);

    xcb_connection_t* m_connection;
    const xcb_screen_t* m_screen; // part of the connection
    std::deque<Event> m_events;   // read while waiting for an answer
};
