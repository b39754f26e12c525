#pragma once

#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

class TrayHost;

/// The program's icon in the panel, whenever there is a panel that shows icons. Main thread.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    TrayIcon();
    ~TrayIcon() override;

    /// Where it is on the desktop; null where there is no icon or the panel does not tell.
    QRect geometry() const;

signals:
    void clicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show();
    void draw();

    std::unique_ptr<TrayHost> m_host;
    // Made when a host is there: what Qt finds then it goes by for good.
    std::optional<QSystemTrayIcon> m_icon;
};
