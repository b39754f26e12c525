#pragma once

#include <QObject>
#include <QStringList>

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
