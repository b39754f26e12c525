#include "SelectionOwner.h"

#include <poll.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

SelectionOwner::SelectionOwner(std::function<Answer(const std::string&)> answer)
    : m_answer(std::move(answer)),
      m_connection(xcb_connect(nullptr, nullptr)),
      m_window(xcb_generate_id(m_connection))
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(m_connection, m_window, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    atom("CLIPBOARD"); // the server has come to here when it answers this
    m_thread = std::thread([this] { serve(); });
}

SelectionOwner::~SelectionOwner()
{
    m_isEnding = true;
    m_thread.join();
    xcb_disconnect(m_connection);
}

xcb_atom_t SelectionOwner::atom(const std::string& name)
{
    auto* reply = xcb_intern_atom_reply(
        m_connection,
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t result = reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
    std::free(reply);
    return result;
}

std::string SelectionOwner::name(xcb_atom_t atom)
{
    auto* reply =
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr);
    if (reply == nullptr)
        return {};
    std::string result(xcb_get_atom_name_name(reply),
                       static_cast<std::size_t>(xcb_get_atom_name_name_length(reply)));
    std::free(reply);
    return result;
}

std::string SelectionOwner::atoms(const std::vector<std::string>& names)
{
    std::string bytes;
    for (const std::string& name : names) {
        const xcb_atom_t value = atom(name);
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return bytes;
}

std::vector<std::string> SelectionOwner::asked()
{
    const std::lock_guard lock(m_mutex);
    return m_asked;
}

void SelectionOwner::serve()
{
    while (!m_isEnding && xcb_connection_has_error(m_connection) == 0) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
            if ((event->response_type & 0x7F) == XCB_SELECTION_REQUEST)
                take(*reinterpret_cast<xcb_selection_request_event_t*>(event));
            if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY)
                goOn(*reinterpret_cast<xcb_property_notify_event_t*>(event));
            std::free(event);
        }
        pollfd descriptor = {xcb_get_file_descriptor(m_connection), POLLIN, 0};
        poll(&descriptor, 1, 5);
    }
}

void SelectionOwner::take(const xcb_selection_request_event_t& request)
{
    const std::string target = name(request.target);
    {
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(target);
    }
    const Answer present = m_answer(target);
    if (present.isLate) {
        m_late.emplace_back(request, present);
        return;
    }
    for (const auto& [earlier, late] : std::exchange(m_late, {}))
        answer(earlier, late);
    if (present.isEndless)
        answerEndlessly(request);
    else if (!present.isSilent)
        answer(request, present);
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request, const Answer& answer)
{
    if (!answer.type.empty()) {
        const auto units = answer.bytes.size() / (static_cast<std::size_t>(answer.format) / 8);
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, atom(answer.type),
                            static_cast<std::uint8_t>(answer.format),
                            static_cast<std::uint32_t>(units), answer.bytes.data());
    }
    send(request, answer.type.empty() ? xcb_atom_t{XCB_NONE} : request.property);
}

/// Tells that the answer is in that property.
void SelectionOwner::send(const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = property;
    std::array<char, 32> event{};
    std::memcpy(event.data(), &notify, sizeof notify);
    xcb_send_event(m_connection, 0, request.requestor, 0, event.data());
    xcb_flush(m_connection);
}

void SelectionOwner::answerEndlessly(const xcb_selection_request_event_t& request)
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, request.requestor, XCB_CW_EVENT_MASK, &events);
    const std::uint32_t size = 1;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        atom("INCR"), 32, 1, &size);
    send(request, request.property);
}

/// Another piece each time the last one has been taken.
void SelectionOwner::goOn(const xcb_property_notify_event_t& removal)
{
    if (removal.state != XCB_PROPERTY_DELETE)
        return;
    const std::string piece(200'000, 'x');
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, removal.window, removal.atom,
                        atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(piece.size()),
                        piece.data());
    xcb_flush(m_connection);
    m_endlessBytes += piece.size();
}
