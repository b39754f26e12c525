#pragma once

#include "Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

class Theme;

/// Keeps a theme in the look that the desktop wants. Asks its settings portal (color-scheme,
/// contrast, reduced-motion, and GNOME's enable-animations); without one, the application's palette
/// decides. The portal is not waited for, so a dark desktop may turn the theme dark only a moment
/// after the start. Main thread.
class DesktopAppearance : public QObject
{
    Q_OBJECT

public:
    /// Requires: `theme` outlives this object.
    explicit DesktopAppearance(Theme& theme,
                               const QDBusConnection& bus = QDBusConnection::sessionBus());

    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void takeAll(const QDBusMessage& reply);
    void takeChange(const QDBusMessage& message);

private:
    void ask(const QDBusConnection& bus);
    void take(const QString& group, const QString& key, const QVariant& value);
    void update();

    Theme& m_theme;
    QVariantMap m_settings; // what the portal has told, under "group key"
};
