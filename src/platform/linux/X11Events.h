#pragma once

#include "X11Connection.h"

#include <QSocketNotifier>

#include <functional>

/// The events of a connection, handed out one by one by the event loop of the thread that made
/// this.
class X11Events
{
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    /// `handler` may use the connection, but must not destroy this.
    X11Events(X11Connection& connection, Handler handler);

    /// Sends what is to be sent, and has events handed out that came while something else was
    /// waited for. To be called after the connection was used outside of the handler.
    void flush();

    /// Hands out now what has come. Not for the handler.
    void takeAll() { dispatch(); }

private:
    void dispatch();

    X11Connection& m_connection;
    Handler m_handler;
    QSocketNotifier m_notifier;
};
