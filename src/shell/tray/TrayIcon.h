#pragma once

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

class Theme;
class TrayHost;

/// Shows the program's icon in the panel whenever there is a panel that shows icons. Main thread.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// Requires: `theme` outlives this object.
    explicit TrayIcon(const Theme& theme);
    ~TrayIcon() override;

    /// Where the icon is on the desktop. Null if there is no icon or the panel does not tell.
    QRect geometry() const;

signals:
    void clicked();

private:
    void show();
    void draw();

    const Theme& m_theme;
    std::unique_ptr<TrayHost> m_host;
    // Made only when there is a host, because Qt keeps to the kind of host that it finds then.
    std::optional<QSystemTrayIcon> m_icon;
};
