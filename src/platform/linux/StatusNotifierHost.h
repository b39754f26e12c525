#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <functional>

/// Notices panels that find icons over the session bus. Main thread only.
class StatusNotifierHost : public QObject
{
    Q_OBJECT

public:
    /// `came` is called as TrayHost::create() says.
    explicit StatusNotifierHost(std::function<void()> came);

private slots:
    void ask();

private:
    const std::function<void()> m_came;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
};
