#pragma once

#include "Pasteboard.h"
#include "X11Connection.h"

#include <list>
#include <map>
#include <memory>

/// Answers other programs' requests for a selection that this program owns. Large contents go piece
/// by piece. A requestor may vanish at any time. One thread at a time.
class SelectionAnswers
{
public:
    /// Requires: `connection` outlives this object.
    explicit SelectionAnswers(X11Connection& connection);

    /// Offers `item` too. Of a type that is offered twice, the first data count.
    void add(Pasteboard::Item item);
    /// Offers nothing any more. Transfers that have begun go on.
    void clear();
    /// Says when the selection was acquired, in the X server's time.
    void setTime(xcb_timestamp_t time) { m_time = time; }

    void answer(const xcb_selection_request_event_t& request);
    /// Sends the next piece of a transfer when its requestor has taken the one before.
    void propertyChanged(const xcb_property_notify_event_t& notify);
    void windowDestroyed(xcb_window_t window);
    /// Ends the transfers whose requestors have taken nothing for too long. Returns whether there
    /// were any.
    bool dropForgotten();

    /// The types that are offered, in their order.
    const std::vector<xcb_atom_t>& targets() const { return m_order; }

    bool isTransferring() const { return !m_transfers.empty(); }

private:
    struct Content
    {
        xcb_atom_t type;
        std::uint8_t format;
        std::string data;
    };
    struct Transfer
    {
        xcb_window_t requestor;
        xcb_atom_t property;
        std::shared_ptr<const Content> content;
        std::size_t sent;
        X11Connection::Deadline deadline;
    };

    bool put(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool putSeveral(xcb_window_t requestor, xcb_atom_t property);
    bool putContent(xcb_window_t requestor, xcb_atom_t property,
                    const std::shared_ptr<const Content>& content);
    void putPiece(Transfer& transfer);
    void stopWatching(xcb_window_t requestor);
    xcb_atom_t atom(std::string_view name);

    X11Connection& m_connection;
    const std::size_t m_pieceBytes;
    std::vector<xcb_atom_t> m_order;
    std::map<xcb_atom_t, std::shared_ptr<const Content>> m_contents;
    std::list<Transfer> m_transfers;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
};
