#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// A connection of our own to the X server, on which nothing waits longer than it is told to. When
/// the connection is lost, every call ends at once, with nothing. One thread at a time.
class XcbConnection
{
public:
    using Clock = std::chrono::steady_clock;
    using Deadline = Clock::time_point;

    struct Free
    {
        void operator()(void* memory) const { std::free(memory); }
    };
    template <typename Value>
    using Owned = std::unique_ptr<Value, Free>;
    using Event = Owned<xcb_generic_event_t>;

    struct Property
    {
        xcb_atom_t type;
        std::uint8_t format; // bits of a unit: 8, 16 or 32
        std::string bytes;
    };
    enum class Afterwards { keep, remove };

    /// Null where no X server answers.
    static std::unique_ptr<XcbConnection> create();

    ~XcbConnection();
    XcbConnection(const XcbConnection&) = delete;
    XcbConnection& operator=(const XcbConnection&) = delete;

    xcb_connection_t* get() const { return m_connection; }
    xcb_window_t root() const { return m_root; }

    /// Whether two windows or other resources were made by the same program.
    bool isSameClient(xcb_window_t one, xcb_window_t other) const;

    /// The answer to a request; null at the deadline, and upon an error.
    template <typename Reply, typename Cookie>
    Owned<Reply> reply(Cookie cookie, Deadline deadline)
    {
        return Owned<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence, deadline)));
    }

    /// The next event, in order; null at the deadline.
    Event nextEvent(Deadline deadline);
    /// The same without waiting, nor sending what is to be sent.
    Event pendingEvent();

    /// An invisible window that gets PropertyNotify.
    xcb_window_t createWindow();

    /// XCB_NONE where it cannot be had.
    xcb_atom_t atom(std::string_view name, Deadline deadline);
    std::string atomName(xcb_atom_t atom, Deadline deadline);

    /// A property of at most `maximumBytes`. Nothing where there is none or a longer one.
    std::optional<Property> property(xcb_window_t window, xcb_atom_t name, std::size_t maximumBytes,
                                     Deadline deadline, Afterwards afterwards = Afterwards::keep);

private:
    XcbConnection(xcb_connection_t* connection, xcb_window_t root);
    void* waitForReply(unsigned int sequence, Deadline deadline);
    bool waitForInput(Deadline deadline);

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    std::deque<Event> m_events; // read while waiting for an answer
};
