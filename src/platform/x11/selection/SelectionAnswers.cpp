#include "SelectionAnswers.h"

#include "SelectionForm.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::size_t largestPiece = std::size_t{1} << 20;
constexpr std::size_t maximumPairs = 1000; // of a MULTIPLE request
constexpr std::chrono::seconds patience(10);
constexpr std::chrono::seconds serverLimit(1);

/// How many bytes of data fit into one request to the X server, within `largestPiece`.
std::size_t pieceBytes(xcb_connection_t* connection)
{
    const std::size_t request = std::size_t{xcb_get_maximum_request_length(connection)} * 4;
    return std::min(largestPiece, request - 256) / 4 * 4;
}

} // namespace

SelectionAnswers::SelectionAnswers(X11Connection& connection)
    : m_connection(connection), m_pieceBytes(pieceBytes(connection.get()))
{}

xcb_atom_t SelectionAnswers::atom(std::string_view name)
{
    return m_connection.atom(name, X11Connection::Clock::now() + serverLimit);
}

void SelectionAnswers::clear()
{
    m_order.clear();
    m_contents.clear();
}

void SelectionAnswers::add(Pasteboard::Item item)
{
    for (Pasteboard::Representation& representation : item) {
        const SelectionForm form = SelectionForm::parse(representation.form, representation.type);
        const xcb_atom_t target = atom(representation.type);
        const auto content = std::make_shared<const Content>(
            Content{atom(form.type), form.format, std::move(representation.data)});
        if (target != XCB_NONE && content->type != XCB_NONE &&
            m_contents.emplace(target, content).second)
            m_order.push_back(target);
    }
}

void SelectionAnswers::answer(const xcb_selection_request_event_t& request)
{
    // Obsolete programs name no property. They mean the one with the target's name.
    const xcb_atom_t property = request.property == XCB_NONE ? request.target : request.property;
    const bool isDone =
        request.target == atom("MULTIPLE")
            ? request.property != XCB_NONE && putSeveral(request.requestor, property)
            : put(request.requestor, request.target, property);
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isDone ? property : static_cast<xcb_atom_t>(XCB_NONE);
    // An event on the wire has 32 bytes, more than this one's structure.
    std::array<char, 32> event{};
    std::memcpy(event.data(), &notify, sizeof notify);
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.data());
}

bool SelectionAnswers::put(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (target == atom("TARGETS")) {
        std::vector<xcb_atom_t> targets = {atom("TARGETS"), atom("TIMESTAMP"), atom("MULTIPLE")};
        targets.insert(targets.end(), m_order.begin(), m_order.end());
        m_connection.setValues(requestor, property, XCB_ATOM_ATOM, targets);
        return true;
    }
    if (target == atom("TIMESTAMP")) {
        m_connection.setValues(requestor, property, XCB_ATOM_INTEGER, {&m_time, 1});
        return true;
    }
    const auto found = m_contents.find(target);
    return found != m_contents.end() && putContent(requestor, property, found->second);
}

/// Answers a MULTIPLE request, whose property lists pairs: a target, and the property to put its
/// data into. Where nothing could be put, the second of the pair is set to none.
bool SelectionAnswers::putSeveral(xcb_window_t requestor, xcb_atom_t property)
{
    const auto list =
        m_connection.property(requestor, property, maximumPairs * 2 * sizeof(xcb_atom_t),
                              X11Connection::Clock::now() + serverLimit);
    if (!list || list->format != 32)
        return false;
    std::vector<xcb_atom_t> atoms(list->bytes.size() / (2 * sizeof(xcb_atom_t)) * 2);
    if (atoms.empty())
        return false;
    std::memcpy(atoms.data(), list->bytes.data(), atoms.size() * sizeof(xcb_atom_t));
    for (std::size_t i = 0; i < atoms.size(); i += 2) {
        if (atoms[i + 1] == XCB_NONE || !put(requestor, atoms[i], atoms[i + 1]))
            atoms[i + 1] = XCB_NONE;
    }
    m_connection.setValues(requestor, property, atom("ATOM_PAIR"), atoms);
    return true;
}

bool SelectionAnswers::putContent(xcb_window_t requestor, xcb_atom_t property,
                                  const std::shared_ptr<const Content>& content)
{
    const std::size_t size = content->data.size();
    if (size <= m_pieceBytes) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, requestor, property,
                            content->type, content->format,
                            static_cast<std::uint32_t>(size / (content->format / 8U)),
                            content->data.data());
        return true;
    }
    // A second request for the same property takes the place of the first.
    m_transfers.remove_if([&](const Transfer& transfer) {
        return transfer.requestor == requestor && transfer.property == property;
    });
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.get(), requestor, XCB_CW_EVENT_MASK, &events);
    const auto announced = static_cast<std::uint32_t>(std::min<std::size_t>(size, UINT32_MAX));
    m_connection.setValues(requestor, property, atom("INCR"), {&announced, 1});
    m_transfers.push_back(
        {requestor, property, content, 0, X11Connection::Clock::now() + patience});
    return true;
}

void SelectionAnswers::propertyChanged(const xcb_property_notify_event_t& notify)
{
    if (notify.state != XCB_PROPERTY_DELETE)
        return;
    const auto found =
        std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer& transfer) {
            return transfer.requestor == notify.window && transfer.property == notify.atom;
        });
    if (found == m_transfers.end())
        return;
    const bool isLast = found->sent == found->content->data.size();
    putPiece(*found); // an empty piece ends the transfer
    if (isLast) {
        m_transfers.erase(found);
        stopWatching(notify.window);
    }
}

void SelectionAnswers::putPiece(Transfer& transfer)
{
    const Content& content = *transfer.content;
    const std::size_t size = std::min(m_pieceBytes, content.data.size() - transfer.sent);
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, transfer.requestor,
                        transfer.property, content.type, content.format,
                        static_cast<std::uint32_t>(size / (content.format / 8U)),
                        content.data.data() + transfer.sent);
    transfer.sent += size;
    transfer.deadline = X11Connection::Clock::now() + patience;
}

void SelectionAnswers::stopWatching(xcb_window_t requestor)
{
    const bool isStillNeeded =
        std::any_of(m_transfers.begin(), m_transfers.end(),
                    [&](const Transfer& transfer) { return transfer.requestor == requestor; });
    if (isStillNeeded)
        return;
    const std::uint32_t events = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_connection.get(), requestor, XCB_CW_EVENT_MASK, &events);
}

void SelectionAnswers::windowDestroyed(xcb_window_t window)
{
    m_transfers.remove_if([&](const Transfer& transfer) { return transfer.requestor == window; });
}

bool SelectionAnswers::dropForgotten()
{
    const auto now = X11Connection::Clock::now();
    std::vector<xcb_window_t> dropped;
    m_transfers.remove_if([&](const Transfer& transfer) {
        if (transfer.deadline > now)
            return false;
        dropped.push_back(transfer.requestor);
        return true;
    });
    for (const xcb_window_t requestor : dropped)
        stopWatching(requestor);
    return !dropped.empty();
}
