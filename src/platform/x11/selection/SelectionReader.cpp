#include "SelectionReader.h"

#include "Utf8.h"

#include <algorithm>

static constexpr std::chrono::milliseconds setupLimit(100);

SelectionReader::SelectionReader(X11Connection& connection)
    : m_connection(connection),
      m_property(connection.atom("_PITHWISE_SELECTION", X11Connection::Clock::now() + setupLimit)),
      m_incr(connection.atom("INCR", X11Connection::Clock::now() + setupLimit)),
      m_window(connection.createWindow())
{}

/// Waits for the owner's answer. Returns whether it has put something into the property before the
/// deadline.
bool SelectionReader::waitForAnswer(xcb_atom_t selection, xcb_atom_t target, Deadline deadline)
{
    while (const X11Connection::Event event = m_connection.nextEvent(deadline)) {
        if ((event->response_type & 0x7F) != XCB_SELECTION_NOTIFY)
            continue;
        const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
        if (notify.requestor == m_window && notify.selection == selection &&
            notify.target == target)
            return notify.property == m_property;
    }
    m_hasStalled = true;
    return false;
}

bool SelectionReader::waitForPiece(Deadline deadline)
{
    while (const X11Connection::Event event = m_connection.nextEvent(deadline)) {
        if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
            continue;
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (notify.window == m_window && notify.atom == m_property &&
            notify.state == XCB_PROPERTY_NEW_VALUE)
            return true;
    }
    m_hasStalled = true;
    return false;
}

std::optional<X11Connection::Property>
SelectionReader::readPieces(std::chrono::milliseconds patience, Deadline deadline)
{
    Property whole = {XCB_NONE, 8, {}};
    while (waitForPiece(std::min(deadline, X11Connection::Clock::now() + patience))) {
        std::optional<Property> piece =
            m_connection.property(m_window, m_property, maximumBytes - whole.bytes.size(), deadline,
                                  X11Connection::Afterwards::remove);
        // There may be nothing yet: the first event may still be about the announcement, which is
        // gone by now. A piece that is too large stays where it is; the owner waits in vain for its
        // removal, and this loop ends in time.
        if (!piece)
            continue;
        if (piece->bytes.empty())
            return whole;
        whole.type = piece->type;
        whole.format = piece->format;
        whole.bytes += piece->bytes;
    }
    return std::nullopt;
}

std::optional<X11Connection::Property> SelectionReader::convert(xcb_atom_t selection,
                                                                xcb_atom_t target,
                                                                std::chrono::milliseconds patience,
                                                                Deadline deadline)
{
    m_hasStalled = false;
    xcb_delete_property(m_connection.get(), m_window, m_property);
    xcb_convert_selection(m_connection.get(), m_window, selection, target, m_property,
                          XCB_CURRENT_TIME);
    std::optional<Property> result;
    if (waitForAnswer(selection, target,
                      std::min(deadline, X11Connection::Clock::now() + patience))) {
        result = m_connection.property(m_window, m_property, maximumBytes, deadline,
                                       X11Connection::Afterwards::remove);
        if (result && result->type == m_incr)
            result = readPieces(patience, deadline);
        m_hasStalled = !result;
    }
    // An answer that comes too late must not be taken for the answer to a later question. It goes
    // to the old window, which is given up here.
    if (m_hasStalled)
        m_window = m_connection.createWindow();
    return result;
}

std::optional<std::string>
SelectionReader::text(xcb_atom_t selection, std::chrono::milliseconds patience, Deadline deadline)
{
    // UTF8_STRING comes first, because GTK ends lines with CRLF in the others.
    for (const char* name : {"UTF8_STRING", "text/plain;charset=utf-8", "STRING", "text/plain"}) {
        const xcb_atom_t target = m_connection.atom(name, deadline);
        std::optional<Property> property = convert(selection, target, patience, deadline);
        if (m_hasStalled)
            return std::nullopt;
        if (property && property->format == 8)
            return property->type == XCB_ATOM_STRING ? Utf8::fromLatin1(property->bytes)
                                                     : std::move(property->bytes);
    }
    return std::nullopt;
}
