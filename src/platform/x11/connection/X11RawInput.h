#pragma once

#include "X11Connection.h"

#include <xcb/xinput.h>

#include <cstdint>
#include <optional>

/// Raw events of the mouse and the keyboard, whichever program gets the input.
class X11RawInput
{
public:
    struct Event
    {
        std::uint16_t type; // one of XCB_INPUT_RAW_*
        std::uint32_t detail;
        xcb_timestamp_t time;
    };

    /// Requires: `connection` outlives this object.
    explicit X11RawInput(X11Connection& connection);

    /// Whether the server can tell these events.
    bool isAvailable() const { return m_opcode != 0; }

    /// From now on the server tells the events in `mask` (XCB_INPUT_XI_EVENT_MASK_*) and no others.
    void select(std::uint32_t mask);

    /// `event` as a raw event, nothing if it is another one.
    std::optional<Event> read(const xcb_generic_event_t& event) const;

private:
    X11Connection& m_connection;
    std::uint8_t m_opcode = 0;
};
