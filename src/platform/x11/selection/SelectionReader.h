#pragma once

#include "X11Connection.h"

#include <optional>
#include <string>

/// Reads what another program offers as one of the X server's selections (the clipboard, PRIMARY),
/// also large contents that come in pieces. One thread at a time.
class SelectionReader
{
public:
    using Deadline = X11Connection::Deadline;
    using Property = X11Connection::Property;

    /// The most bytes that are taken of one target.
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    /// Requires: `connection` outlives this object, and nobody else uses it while a call runs.
    explicit SelectionReader(X11Connection& connection);

    /// The selection in the form `target`. Nothing if its owner refuses it, is silent for
    /// `patience`, has not finished by the deadline, or has more than `maximumBytes`.
    std::optional<Property> convert(xcb_atom_t selection, xcb_atom_t target,
                                    std::chrono::milliseconds patience, Deadline deadline);

    /// The selection as text in UTF-8, which may be invalid. Nothing if there is no text, or if
    /// convert() gets none.
    std::optional<std::string> text(xcb_atom_t selection, std::chrono::milliseconds patience,
                                    Deadline deadline);

    /// Whether the last convert() returned nothing although the owner may have something: it did
    /// not answer in time, or had too much.
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
