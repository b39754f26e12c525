#include "X11Events.h"

#include <utility>

X11Events::X11Events(X11Connection& connection, Handler handler)
    : m_connection(connection),
      m_handler(std::move(handler)),
      m_notifier(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { takeAll(); });
}

void X11Events::flush()
{
    xcb_flush(m_connection.get());
    // Events that have been read already do not wake the notifier.
    QMetaObject::invokeMethod(
        &m_notifier, [this] { takeAll(); }, Qt::QueuedConnection);
}

void X11Events::takeAll()
{
    while (const X11Connection::Event event = m_connection.pendingEvent())
        m_handler(*event);
    xcb_flush(m_connection.get());
    if (m_connection.isLost())
        m_notifier.setEnabled(false); // else it would fire for ever
}
