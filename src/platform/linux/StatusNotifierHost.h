#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <functional>

/// A panel that asks on the session bus for icons.
class StatusNotifierHost : public QObject
{
    Q_OBJECT

public:
    /// As for TrayHost::create.
    explicit StatusNotifierHost(std::function<void()> came);

private slots:
    void ask();

private:
    const std::function<void()> m_came;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
};
