#pragma once

#include "X11Connection.h"

#include <optional>
#include <string>

/// Reads what another program offers as one of the X server's selections (the clipboard, PRIMARY),
/// pieces of a large one included. One thread at a time.
class SelectionReader
{
public:
    using Deadline = X11Connection::Deadline;
    using Property = X11Connection::Property;

    /// The most that is taken of one target, in bytes.
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    /// `connection` outlives this, and is used by nobody else while a call runs.
    explicit SelectionReader(X11Connection& connection);

    /// The window of who has the selection, XCB_NONE where nobody has. Nothing where the server
    /// does not say so before the deadline.
    std::optional<xcb_window_t> owner(xcb_atom_t selection, Deadline deadline);

    /// The selection as `target`. Nothing where its owner refuses, does not go on for `patience`
    /// or until the deadline, or has more than `maximumBytes`.
    std::optional<Property> convert(xcb_atom_t selection, xcb_atom_t target,
                                    std::chrono::milliseconds patience, Deadline deadline);

    /// The selection as text in UTF-8, which may be invalid.
    std::optional<std::string> text(xcb_atom_t selection, std::chrono::milliseconds patience,
                                    Deadline deadline);

    /// Whether the last convert() came to nothing although the owner has something: it did not
    /// answer in time, or is not to be listened to any longer.
    bool hasStalled() const { return m_hasStalled; }

private:
    bool waitForAnswer(xcb_atom_t selection, xcb_atom_t target, Deadline deadline);
    bool waitForPiece(Deadline deadline);
    std::optional<Property> readPieces(std::chrono::milliseconds patience, Deadline deadline);

    X11Connection& m_connection;
    xcb_atom_t m_property; // on m_window, where owners put what is asked for
    xcb_atom_t m_incr;
    xcb_window_t m_window;
    bool m_hasStalled = false;
};
