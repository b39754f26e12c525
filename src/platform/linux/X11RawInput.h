#pragma once

#include "X11Connection.h"

#include <xcb/xinput.h>

#include <cstdint>
#include <optional>

/// What happens on the mouse and the keyboard, whichever program gets it.
class X11RawInput
{
public:
    struct Event
    {
        std::uint16_t type; // XCB_INPUT_RAW_*
        std::uint32_t detail;
        xcb_timestamp_t time;
    };

    /// The connection is kept.
    explicit X11RawInput(X11Connection& connection);

    /// Whether the server has what this needs.
    bool isAvailable() const { return m_opcode != 0; }

    /// Has the server tell the events of `mask` from now on, and no others.
    void select(std::uint32_t mask);

    /// `event` if it is one of them.
    std::optional<Event> read(const xcb_generic_event_t& event) const;

private:
    X11Connection& m_connection;
    std::uint8_t m_opcode = 0;
};
