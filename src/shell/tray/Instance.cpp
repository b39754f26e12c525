#include "Instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <array>

// The top-level domain "local" belongs to nobody.
static const QString busName = QStringLiteral("local.pithwise.Pithwise");
static const QString busPath = QStringLiteral("/local/pithwise/Pithwise");

// In the order of the requests.
static constexpr std::array methods = {"Toggle", "Hotkey"};

Instance::Answer Instance::ask(Request request)
{
    constexpr int limit = 2'000; // milliseconds
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Answer::nobody;
    const QLatin1String method(methods.at(static_cast<std::size_t>(request)));
    QDBusMessage message = QDBusMessage::createMethodCall(busName, busPath, busName, method);
    message.setAutoStartService(false);
    const QDBusMessage reply = bus.call(message, QDBus::Block, limit);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Answer::done;
    // The process may have ended instead of answering.
    const bool isThere = bus.interface()->isServiceRegistered(busName);
    return isThere ? Answer::silent : Answer::nobody;
}

bool Instance::claim()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return true;
    // Registered before the name, because others find it by that.
    bus.registerObject(busPath, this, QDBusConnection::ExportScriptableSlots);
    return bus.registerService(busName);
}
