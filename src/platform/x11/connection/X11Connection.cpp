#include "X11Connection.h"

#include "Mutex.h"

#include <poll.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace {

/// The screen with this number, or the last one; null if there is no screen at all.
const xcb_screen_t* findScreen(xcb_connection_t* connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

/// Connects, one thread at a time. libXau keeps the name of the authority file in a static
/// variable: of two threads that are there for the first time, one frees what the other uses.
xcb_connection_t* connect(int& screenNumber)
{
    static Mutex connecting;
    const MutexLock lock(connecting);
    return xcb_connect(nullptr, &screenNumber);
}

} // namespace

std::unique_ptr<X11Connection> X11Connection::open()
{
    int number = 0;
    xcb_connection_t* connection = connect(number);
    const bool isOpen = xcb_connection_has_error(connection) == 0;
    const xcb_screen_t* screen = isOpen ? findScreen(connection, number) : nullptr;
    // A connection that has failed must be closed too.
    std::unique_ptr<X11Connection> result(new X11Connection(connection, screen));
    return screen == nullptr ? nullptr : std::move(result);
}

X11Connection::X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen)
    : m_connection(connection), m_screen(screen)
{}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}

const xcb_query_extension_reply_t* X11Connection::extension(xcb_extension_t& id) const
{
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(m_connection, &id);
    return data != nullptr && data->present != 0 ? data : nullptr;
}

bool X11Connection::startFixes(Deadline deadline)
{
    return extension(xcb_xfixes_id) != nullptr &&
           reply<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version(m_connection, 5, 0),
                                                   deadline);
}

bool X11Connection::isSameClient(xcb_window_t one, xcb_window_t other) const
{
    const std::uint32_t mask = ~xcb_get_setup(m_connection)->resource_id_mask;
    return one != XCB_NONE && (one & mask) == (other & mask);
}

double X11Connection::pixelsPerPoint()
{
    // This property is where desktops publish the scale, as dots per inch; 96 is a scale of 1.
    constexpr std::size_t most = 1 << 20;
    const auto property = this->property(root(), XCB_ATOM_RESOURCE_MANAGER, most, never);
    const std::string resources = "\n" + (property ? property->bytes : "");
    const std::string_view key = "\nXft.dpi:";
    std::size_t begin = resources.find(key);
    if (begin == std::string::npos)
        return 1;
    begin = std::min(resources.find_first_not_of(" \t", begin + key.size()), resources.size());
    double dotsPerInch = 96;
    std::from_chars(resources.data() + begin, resources.data() + resources.size(), dotsPerInch);
    return dotsPerInch > 96 ? std::min(dotsPerInch / 96, 16.0) : 1; // also for "nan"
}

/// Waits until there is something to read. Returns false if there is nothing before the deadline.
bool X11Connection::waitForInput(Deadline deadline)
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

void* X11Connection::waitForReply(unsigned int sequence, Deadline deadline)
{
    xcb_flush(m_connection);
    for (;;) {
        // Polling for events also fetches the answers.
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection))
            m_events.emplace_back(event);
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(m_connection, sequence, &reply, &error) != 0) {
            std::free(error);
            return reply;
        }
        if (isLost())
            return nullptr;
        if (!waitForInput(deadline)) {
            xcb_discard_reply(m_connection, sequence);
            return nullptr;
        }
    }
}

void X11Connection::finish(Deadline deadline)
{
    reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_connection), deadline);
}

X11Connection::Event X11Connection::pendingEvent()
{
    if (m_events.empty())
        return Event(xcb_poll_for_event(m_connection));
    Event event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

X11Connection::Event X11Connection::nextEvent(Deadline deadline)
{
    xcb_flush(m_connection);
    // However many events come, the deadline holds.
    while (Clock::now() < deadline) {
        if (Event event = pendingEvent())
            return event;
        if (isLost() || !waitForInput(deadline))
            break;
    }
    return nullptr;
}

xcb_window_t X11Connection::createWindow()
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return window;
}

xcb_atom_t X11Connection::atom(std::string_view name, Deadline deadline)
{
    if (const auto known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto answer = reply<xcb_intern_atom_reply_t>(cookie, deadline);
    return answer ? m_atoms.emplace(name, answer->atom).first->second : xcb_atom_t{XCB_NONE};
}

std::string X11Connection::atomName(xcb_atom_t atom, Deadline deadline)
{
    const auto answer =
        reply<xcb_get_atom_name_reply_t>(xcb_get_atom_name(m_connection, atom), deadline);
    if (!answer)
        return {};
    return {xcb_get_atom_name_name(answer.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(answer.get()))};
}

std::optional<X11Connection::Property> X11Connection::property(xcb_window_t window, xcb_atom_t name,
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

xcb_get_property_cookie_t X11Connection::askValues(xcb_window_t window, xcb_atom_t property,
                                                   std::uint32_t most) const
{
    return xcb_get_property(m_connection, 0, window, property, XCB_ATOM_ANY, 0, most);
}

std::vector<std::uint32_t> X11Connection::values(xcb_get_property_cookie_t question,
                                                 Deadline deadline)
{
    const auto answer = reply<xcb_get_property_reply_t>(question, deadline);
    if (!answer || answer->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
    return {first, first + bytes / sizeof *first};
}

std::optional<std::uint32_t> X11Connection::value(xcb_window_t window, std::string_view property,
                                                  Deadline deadline)
{
    const auto all = values(askValues(window, atom(property, deadline), 1), deadline);
    return all.empty() ? std::nullopt : std::optional(all.front());
}

void X11Connection::setValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::span<const std::uint32_t> values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

std::optional<xcb_window_t> X11Connection::selectionOwner(xcb_atom_t selection, Deadline deadline)
{
    const auto answer = reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_connection, selection), deadline);
    return answer ? std::optional(answer->owner) : std::nullopt;
}
