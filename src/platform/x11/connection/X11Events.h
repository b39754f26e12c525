#pragma once

#include "X11Connection.h"

#include <QSocketNotifier>

#include <functional>

/// Hands out the events of a connection, one by one, in the event loop of the thread that made this
/// object.
class X11Events
{
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    /// Requires: `connection` outlives this object. `handler` may use the connection, but must not
    /// destroy this object.
    X11Events(X11Connection& connection, Handler handler);

    /// Sends pending requests, and makes the event loop hand out events that came while an answer
    /// was waited for. Call it after the connection was used outside of the handler.
    void flush();

    /// Hands out at once the events that have come. Not to be called by the handler.
    void takeAll();

private:
    X11Connection& m_connection;
    Handler m_handler;
    QSocketNotifier m_notifier;
};
