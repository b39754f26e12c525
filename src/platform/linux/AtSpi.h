#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QVariant>

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

/// The selected text as applications tell it over the accessibility bus. That bus is used where it
/// runs; neither it nor any setting of the desktop is turned on. One thread at a time.
class AtSpi
{
public:
    AtSpi() = default;
    ~AtSpi();
    AtSpi(const AtSpi&) = delete;
    AtSpi& operator=(const AtSpi&) = delete;

    /// The text selected in the focused element of `process`. Nothing where none is selected, the
    /// application does not tell, or does not do so within `limit`.
    std::optional<std::string> selectedText(pid_t process, std::chrono::milliseconds limit);

private:
    using Clock = std::chrono::steady_clock;

    struct Object
    {
        QString service;
        QString path;
    };
    using States = quint64;

    bool connect();
    QDBusMessage message(const Object& object, const QString& interface, const QString& member,
                         const QVariantList& arguments = {}) const;
    QVariantList call(const QDBusMessage& request);
    int millisecondsLeft() const;

    std::optional<Object> application(pid_t process);
    std::optional<std::string> textOfFocused(const Object& application);
    std::optional<std::string> textByWalk(const Object& application);
    std::optional<std::string> textOf(const Object& object);
    bool isMiscounting(const Object& application);
    bool isWithoutPairs(const Object& object, int end);
    QList<Object> focused(const Object& application);
    QList<Object> children(const Object& parent);
    QList<States> states(const QList<Object>& objects);
    static QList<Object> objects(const QVariantList& answer);
    static States statesOf(const QVariantList& answer);

    QString m_connectionName;
    std::optional<QDBusConnection> m_bus;
    Clock::time_point m_deadline;
    bool m_hasTimedOut = false;
    bool m_isMiscounting = false; // the application that is asked
};
