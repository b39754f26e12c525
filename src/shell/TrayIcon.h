#pragma once

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

class Theme;
class TrayHost;

/// The program's icon in the panel, whenever there is a panel that shows icons. Main thread.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// Requires: `theme` outlives this.
    explicit TrayIcon(const Theme& theme);
    ~TrayIcon() override;

    /// Where it is on the desktop; null where there is no icon or the panel does not tell.
    QRect geometry() const;

signals:
    void clicked();

private:
    void show();
    void draw();

    const Theme& m_theme;
    std::unique_ptr<TrayHost> m_host;
    // Made when a host is there: what Qt finds then it goes by for good.
    std::optional<QSystemTrayIcon> m_icon;
};
