#include "ClipboardManager.h"

#include "Pasteboard.h"

#include <poll.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>

ClipboardManager::ClipboardManager(Manner manner)
    : m_manner(manner),
      m_connection(xcb_connect(nullptr, nullptr)),
      m_window(xcb_generate_id(m_connection)),
      m_pasteboard(Pasteboard::create())
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(m_connection, m_window, atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
    atom("CLIPBOARD_MANAGER"); // the server has come to here when it answers this
    m_thread = std::thread([this] { serve(); });
}

ClipboardManager::~ClipboardManager()
{
    m_isEnding = true;
    m_thread.join();
    xcb_disconnect(m_connection);
}

xcb_atom_t ClipboardManager::atom(const std::string& name)
{
    auto* reply = xcb_intern_atom_reply(
        m_connection,
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t result = reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
    std::free(reply);
    return result;
}

std::vector<std::string> ClipboardManager::asked()
{
    const std::lock_guard lock(m_mutex);
    return m_asked;
}

void ClipboardManager::serve()
{
    while (!m_isEnding && xcb_connection_has_error(m_connection) == 0) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
            if ((event->response_type & 0x7F) == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
            std::free(event);
        }
        pollfd descriptor = {xcb_get_file_descriptor(m_connection), POLLIN, 0};
        poll(&descriptor, 1, 5);
    }
}

void ClipboardManager::noteTargets(const xcb_selection_request_event_t& request)
{
    auto* list = xcb_get_property_reply(m_connection,
                                        xcb_get_property(m_connection, 0, request.requestor,
                                                         request.property, XCB_ATOM_ATOM, 0, 1000),
                                        nullptr);
    std::vector<std::string> names;
    for (int i = 0; list != nullptr && i < xcb_get_property_value_length(list) / 4; ++i) {
        const xcb_atom_t target = static_cast<xcb_atom_t*>(xcb_get_property_value(list))[i];
        auto* name =
            xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, target), nullptr);
        names.emplace_back(xcb_get_atom_name_name(name),
                           static_cast<std::size_t>(xcb_get_atom_name_name_length(name)));
        std::free(name);
    }
    std::free(list);
    const std::lock_guard lock(m_mutex);
    m_asked = names;
}

/// Reads what the clipboard has, then owns it.
bool ClipboardManager::keep()
{
    auto items = m_pasteboard->snapshot(std::chrono::seconds(10)).items;
    if (items.empty())
        return false;
    m_pasteboard->clear();
    for (auto& item : items)
        m_pasteboard->write(std::move(item));
    return true;
}

void ClipboardManager::answer(const xcb_selection_request_event_t& request)
{
    if (request.target == atom("SAVE_TARGETS"))
        noteTargets(request);
    if (m_manner == Manner::isFrozen)
        return;
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    if (m_manner == Manner::keeps && request.target == atom("SAVE_TARGETS") && keep())
        notify.property = request.property;
    std::array<char, 32> event{};
    std::memcpy(event.data(), &notify, sizeof notify);
    xcb_send_event(m_connection, 0, request.requestor, 0, event.data());
    xcb_flush(m_connection);
}
