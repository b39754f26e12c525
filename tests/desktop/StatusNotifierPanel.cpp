#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QStringList>
#include <QTimer>

#include <cstdio>

/// A panel as programs see it on the session bus: what keeps the list of icons and shows them.
class StatusNotifierPanel : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER m_isHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER m_items)
    Q_PROPERTY(int ProtocolVersion MEMBER m_version)

public:
    explicit StatusNotifierPanel(bool isHost) : m_isHost(isHost) {}

    void becomeHost()
    {
        m_isHost = true;
        emit StatusNotifierHostRegistered();
    }

public slots:
    /// Prints the bus name of each.
    void RegisterStatusNotifierItem(const QString& service)
    {
        m_items.append(service);
        std::printf("item %s\n", qPrintable(service));
        std::fflush(stdout);
        emit StatusNotifierItemRegistered(service);
    }

signals:
    void StatusNotifierHostRegistered();
    void StatusNotifierItemRegistered(const QString& service);

private:
    bool m_isHost;
    QStringList m_items;
    int m_version = 0;
};

/// With an argument it is the host that shows the icons only after so many milliseconds.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    StatusNotifierPanel panel(argc == 1);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject("/StatusNotifierWatcher", &panel, QDBusConnection::ExportAllContents);
    if (!bus.registerService("org.kde.StatusNotifierWatcher"))
        return 1;
    if (argc > 1)
        QTimer::singleShot(atoi(argv[1]), &panel, &StatusNotifierPanel::becomeHost);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

#include "StatusNotifierPanel.moc"
