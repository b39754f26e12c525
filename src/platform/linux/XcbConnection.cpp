#include "XcbConnection.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cerrno>

std::unique_ptr<XcbConnection> XcbConnection::create()
{
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    xcb_window_t root = XCB_NONE;
    if (xcb_connection_has_error(connection) == 0) {
        auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (; screen.rem > 0 && screenNumber >= 0; --screenNumber, xcb_screen_next(&screen))
            root = screen.data->root;
    }
    // A connection that failed has to be given back too.
    std::unique_ptr<XcbConnection> result(new XcbConnection(connection, root));
    return root == XCB_NONE ? nullptr : std::move(result);
}

XcbConnection::XcbConnection(xcb_connection_t* connection, xcb_window_t root)
    : m_connection(connection), m_root(root)
{}

XcbConnection::~XcbConnection()
{
    xcb_disconnect(m_connection);
}

bool XcbConnection::isSameClient(xcb_window_t one, xcb_window_t other) const
{
    const std::uint32_t mask = ~xcb_get_setup(m_connection)->resource_id_mask;
    return one != XCB_NONE && (one & mask) == (other & mask);
}

/// Whether there is something to read before the deadline.
bool XcbConnection::waitForInput(Deadline deadline)
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return false;
        pollfd descriptor = {xcb_get_file_descriptor(m_connection), POLLIN, 0};
        const auto timeout = std::min<std::chrono::milliseconds::rep>(left.count(), 60'000);
        const int count = poll(&descriptor, 1, static_cast<int>(timeout));
        if (count > 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
    }
}

void* XcbConnection::waitForReply(unsigned int sequence, Deadline deadline)
{
    xcb_flush(m_connection);
    for (;;) {
        // Reading events is what fetches answers as well.
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection))
            m_events.emplace_back(event);
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(m_connection, sequence, &reply, &error) != 0) {
            std::free(error);
            return reply;
        }
        if (xcb_connection_has_error(m_connection) != 0)
            return nullptr;
        if (!waitForInput(deadline)) {
            xcb_discard_reply(m_connection, sequence);
            return nullptr;
        }
    }
}

XcbConnection::Event XcbConnection::pendingEvent()
{
    if (m_events.empty())
        return Event(xcb_poll_for_event(m_connection));
    Event event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

XcbConnection::Event XcbConnection::nextEvent(Deadline deadline)
{
    xcb_flush(m_connection);
    // However many events come, the deadline holds.
    while (Clock::now() < deadline) {
        if (Event event = pendingEvent())
            return event;
        if (xcb_connection_has_error(m_connection) != 0 || !waitForInput(deadline))
            break;
    }
    return nullptr;
}

xcb_window_t XcbConnection::createWindow()
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return window;
}

xcb_atom_t XcbConnection::atom(std::string_view name, Deadline deadline)
{
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto answer = reply<xcb_intern_atom_reply_t>(cookie, deadline);
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_NONE);
}

std::string XcbConnection::atomName(xcb_atom_t atom, Deadline deadline)
{
    const auto answer =
        reply<xcb_get_atom_name_reply_t>(xcb_get_atom_name(m_connection, atom), deadline);
    if (!answer)
        return {};
    return {xcb_get_atom_name_name(answer.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(answer.get()))};
}

std::optional<XcbConnection::Property> XcbConnection::property(xcb_window_t window, xcb_atom_t name,
                                                               std::size_t maximumBytes,
                                                               Deadline deadline,
                                                               Afterwards afterwards)
{
    const auto cookie =
        xcb_get_property(m_connection, afterwards == Afterwards::remove ? 1 : 0, window, name,
                         XCB_ATOM_ANY, 0, static_cast<std::uint32_t>(maximumBytes / 4));
    const auto answer = reply<xcb_get_property_reply_t>(cookie, deadline);
    if (!answer || answer->type == XCB_NONE || answer->bytes_after > 0)
        return std::nullopt;
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
    return Property{
        answer->type, answer->format,
        std::string(static_cast<const char*>(xcb_get_property_value(answer.get())), size)};
}
