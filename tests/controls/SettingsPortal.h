#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

#include <utility>

/// A settings portal as desktops have it.
class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    using Groups = QMap<QString, QVariantMap>;

    struct Rgb
    {
        double red = 0;
        double green = 0;
        double blue = 0;
    };

    SettingsPortal(const QDBusConnection& bus, Groups settings);

public slots:
    QMap<QString, QVariantMap> ReadAll(const QStringList&) const { return m_settings; }

public:
    /// Announces a change.
    void change(const QString& group, const QString& key, const QVariant& value);

private:
    QDBusConnection m_bus;
    Groups m_settings;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const SettingsPortal::Rgb& color)
{
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, SettingsPortal::Rgb& color)
{
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

inline SettingsPortal::SettingsPortal(const QDBusConnection& bus, Groups settings)
    : m_bus(bus), m_settings(std::move(settings))
{
    qDBusRegisterMetaType<Groups>();
    qDBusRegisterMetaType<Rgb>();
    m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                         QDBusConnection::ExportAllSlots);
    m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

inline void SettingsPortal::change(const QString& group, const QString& key, const QVariant& value)
{
    QDBusMessage message = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    message << group << key << QVariant::fromValue(QDBusVariant(value));
    m_bus.send(message);
}
