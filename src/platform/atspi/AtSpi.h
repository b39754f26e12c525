#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QVariant>

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

/// Asks applications over the accessibility bus which text is selected. Uses the bus only if it is
/// running already; turns on neither the bus nor any setting of the desktop. One thread at a time.
class AtSpi
{
public:
    AtSpi() = default;
    ~AtSpi();
    AtSpi(const AtSpi&) = delete;
    AtSpi& operator=(const AtSpi&) = delete;

    /// The text selected in the focused element of the active window of `process`. Nothing if no
    /// text is selected, or if the application does not tell it within `limit`.
    std::optional<std::string> selectedText(pid_t process, std::chrono::milliseconds limit);

    /// Whether something is selected in the focused element of the active window of `process`. Some
    /// applications tell this without telling the text. Nothing if this one does not, or not within
    /// `limit`.
    std::optional<bool> hasSelection(pid_t process, std::chrono::milliseconds limit);

private:
    using Clock = std::chrono::steady_clock;

    struct Object
    {
        QString service;
        QString path;
    };
    using States = quint64;
    using Visitor = std::function<bool(const Object&)>;

    bool connect();
    QDBusMessage message(const Object& object, const QString& interface, const QString& member,
                         const QVariantList& arguments = {}) const;
    QVariantList call(const QDBusMessage& request);
    int millisecondsLeft() const;

    std::optional<Object> activeWindow(pid_t process, std::chrono::milliseconds limit);
    std::optional<Object> application(pid_t process);
    std::optional<Object> activeWindowOf(const Object& application);
    QList<Object> focused(const Object& window);
    void walk(const Object& window, const Visitor& isFound);
    void visitFocused(const Object& window, const Visitor& isFound);
    std::optional<int> selectionsOf(const Object& object);
    std::optional<std::string> textOf(const Object& object);
    bool isPartOfDocument(const Object& object);
    bool isMiscounting(const Object& application);
    bool isWithoutPairs(const Object& object, int end);
    QList<Object> children(const Object& parent);
    QList<States> states(const QList<Object>& objects);
    void addStates(QList<States>& states, const QList<Object>& some);
    static QList<Object> objects(const QVariantList& answer);
    static States statesOf(const QVariantList& answer);

    QString m_connectionName;
    std::optional<QDBusConnection> m_bus;
    Clock::time_point m_deadline;
    bool m_hasTimedOut = false;
    bool m_isMiscounting = false; // of the application that is being asked
};
