#include "StatusNotifierHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

static const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
static const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

StatusNotifierHost::StatusNotifierHost(std::function<void()> came)
    : m_came(std::move(came)),
      m_bus(QDBusConnection::sessionBus()),
      m_watcher(watcherName, m_bus, QDBusServiceWatcher::WatchForRegistration)
{
    if (!m_bus.isConnected())
        return;
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierHost::ask);
    // The watcher may come before the host. It also tells when a host comes.
    m_bus.connect(watcherName, watcherPath, watcherName,
                  QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(ask()));
    ask();
}

void StatusNotifierHost::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError() && reply.value().variant().toBool())
            m_came();
    });
}
