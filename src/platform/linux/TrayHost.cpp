#include "TrayHost.h"

#include "DesktopKind.h"
#include "StatusNotifierHost.h"
#include "X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <xcb/xcb.h>

#include <optional>
#include <utility>

namespace {

/// Notices panels that take in icons as windows.
class XEmbedHost : public QAbstractNativeEventFilter
{
public:
    XEmbedHost(X11Connection& connection, std::function<void()> came)
        : m_manager(connection.atom("MANAGER")),
          m_tray(connection.atom("_NET_SYSTEM_TRAY_S0")),
          m_came(std::move(came))
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
        if (connection.selectionOwner(m_tray).value_or(XCB_NONE) != XCB_NONE)
            tell();
    }

    ~XEmbedHost() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
    Q_DISABLE_COPY_MOVE(XEmbedHost)

    /// Sees what panels announce to everybody before Qt does.
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override
    {
        if (type != "xcb_generic_event_t")
            return false;
        const auto& event = *static_cast<const xcb_client_message_event_t*>(message);
        if ((event.response_type & 0x7F) == XCB_CLIENT_MESSAGE && event.type == m_manager &&
            event.data.data32[1] == m_tray)
            tell();
        return false;
    }

private:
    /// Later, when Qt has seen the panel as well: it gives each one that it sees a new icon, and
    /// one that is replaced at once would be lost for whoever is clicking it.
    void tell() { QMetaObject::invokeMethod(&m_context, m_came, Qt::QueuedConnection); }

    const xcb_atom_t m_manager;
    const xcb_atom_t m_tray;
    const std::function<void()> m_came;
    QObject m_context; // nothing is told after the end
};

/// Waits for both kinds of panels; some panels are only one of them.
class AnyTrayHost : public TrayHost
{
public:
    explicit AnyTrayHost(const std::function<void()>& came) : m_statusNotifier(came)
    {
        if (auto connection = DesktopKind::isX11() ? X11Connection::open() : nullptr)
            m_xEmbed.emplace(*connection, came);
    }

private:
    std::optional<XEmbedHost> m_xEmbed;
    StatusNotifierHost m_statusNotifier;
};

} // namespace

std::unique_ptr<TrayHost> TrayHost::create(const std::function<void()>& came)
{
    return std::make_unique<AnyTrayHost>(came);
}
