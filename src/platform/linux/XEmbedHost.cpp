#include "XEmbedHost.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

#include <utility>

std::unique_ptr<XEmbedHost> XEmbedHost::create(const std::function<void()>& came)
{
    auto connection = X11Connection::open();
    if (!connection)
        return nullptr;
    const auto version = connection->reply<xcb_xfixes_query_version_reply_t>(
        xcb_xfixes_query_version(connection->get(), 5, 0));
    if (!version)
        return nullptr;
    return std::unique_ptr<XEmbedHost>(new XEmbedHost(std::move(connection), came));
}

XEmbedHost::XEmbedHost(std::unique_ptr<X11Connection> connection, const std::function<void()>& came)
    : m_connection(std::move(connection)),
      m_events(*m_connection, [this, came](const xcb_generic_event_t& event) {
          const auto* extension = xcb_get_extension_data(m_connection->get(), &xcb_xfixes_id);
          if (event.response_type != extension->first_event + XCB_XFIXES_SELECTION_NOTIFY)
              return;
          if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event).owner != XCB_NONE)
              came();
      })
{
    if (watch())
        QMetaObject::invokeMethod(QCoreApplication::instance(), came, Qt::QueuedConnection);
    m_events.flush();
}

/// Asks for news of panels. Returns whether there is one already.
bool XEmbedHost::watch()
{
    const xcb_atom_t selection = m_connection->atom("_NET_SYSTEM_TRAY_S0");
    xcb_xfixes_select_selection_input(m_connection->get(), m_connection->root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    const auto owner = m_connection->reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_connection->get(), selection));
    return owner && owner->owner != XCB_NONE;
}
