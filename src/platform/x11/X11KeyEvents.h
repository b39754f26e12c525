#pragma once

#include "KeyEvents.h"
#include "X11Connection.h"

/// Sends keys by the X server's test extension.
class X11KeyEvents : public KeyEvents
{
public:
    explicit X11KeyEvents(std::unique_ptr<X11Connection> connection)
        : m_connection(std::move(connection))
    {}

    /// Whether the X server has the extension.
    bool isAvailable() const;
    Outcome sendCopy() override;

private:
    using Deadline = X11Connection::Deadline;

    void releaseHeldKeys(Deadline deadline);
    xcb_keycode_t copyKey(Deadline deadline);
    void send(std::uint8_t type, xcb_keycode_t key);

    std::unique_ptr<X11Connection> m_connection;
};
