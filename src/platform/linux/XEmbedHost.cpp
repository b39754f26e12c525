#include "XEmbedHost.h"

#include "X11Connection.h"

#include <QCoreApplication>

#include <utility>

std::unique_ptr<XEmbedHost> XEmbedHost::create(const std::function<void()>& came)
{
    const auto connection = X11Connection::open();
    if (!connection)
        return nullptr;
    return std::unique_ptr<XEmbedHost>(new XEmbedHost(*connection, came));
}

XEmbedHost::XEmbedHost(X11Connection& connection, std::function<void()> came)
    : m_manager(connection.atom("MANAGER")),
      m_tray(connection.atom("_NET_SYSTEM_TRAY_S0")),
      m_came(std::move(came))
{
    QCoreApplication::instance()->installNativeEventFilter(this);
    if (connection.selectionOwner(m_tray).value_or(XCB_NONE) != XCB_NONE)
        tell();
}

XEmbedHost::~XEmbedHost()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

/// Sees what panels announce to everybody before Qt does.
bool XEmbedHost::nativeEventFilter(const QByteArray& type, void* message, qintptr*)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const xcb_client_message_event_t*>(message);
    if ((event.response_type & 0x7F) == XCB_CLIENT_MESSAGE && event.type == m_manager &&
        event.data.data32[1] == m_tray)
        tell();
    return false;
}

/// Later, when Qt has seen the panel as well: it gives each one that it sees a new icon, and one
/// that is replaced at once would be lost for whoever is clicking it.
void XEmbedHost::tell()
{
    QMetaObject::invokeMethod(&m_context, m_came, Qt::QueuedConnection);
}
