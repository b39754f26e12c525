#include "StatusNotifierPanel.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QTimer>

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
        QTimer::singleShot(QByteArray(argv[1]).toInt(), &panel, &StatusNotifierPanel::becomeHost);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
