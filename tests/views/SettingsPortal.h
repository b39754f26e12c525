#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
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

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
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
    : m_settings(std::move(settings))
{
    qDBusRegisterMetaType<Groups>();
    qDBusRegisterMetaType<Rgb>();
    QDBusConnection connection = bus;
    connection.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                              QDBusConnection::ExportAllContents);
    connection.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}
