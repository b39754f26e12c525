#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <string>
#include <vector>

class DesktopSession;

/// Reads one application over the accessibility bus, as screen readers do. Signals come with the
/// event loop. Calls to an application that does not answer throw std::runtime_error.
class ScreenReader : public QObject
{
    Q_OBJECT

public:
    struct Node
    {
        QString path; // of the object on the bus
        std::string role;
        std::string name;
        std::string description;
        quint64 states = 0;
        QRect area; // on the screen, in pixels

        bool is(int state) const { return ((states >> static_cast<unsigned>(state)) & 1U) != 0; }
    };

    /// Numbers of the accessibility protocol.
    enum State { checked = 4, enabled = 8, focusable = 11, focused = 12, showing = 25 };

    /// What an application has told unasked, with the source's properties as they were upon that.
    struct Event
    {
        std::string kind; // "StateChanged showing" and the like
        int value;        // the first number that comes with it
        Node source;
    };

    /// Starts the bus where it does not run, and listens from now on: applications that start
    /// later know that somebody does.
    explicit ScreenReader(DesktopSession& session);
    ~ScreenReader() override;
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    /// Reads `process` from now on, once it is on the bus.
    void follow(qint64 process);

    /// All that is on the screen, in the order of the tree.
    std::vector<Node> nodes();

    /// The one that is on the screen, once it is.
    Node find(const std::string& role, const std::string& name);
    /// The same where it may not be there.
    std::optional<Node> lookFor(const std::string& role, const std::string& name);

    /// What has the keyboard.
    std::optional<Node> focus();

    std::string text(const Node& node);
    double value(const Node& node);

    /// Does what the application calls `action`.
    void perform(const Node& node, const QString& action);

    const std::vector<Event>& events() const { return m_events; }
    void forgetEvents() { m_events.clear(); }

private slots:
    void take(const QDBusMessage& signal);

private:
    struct Questions;

    QDBusPendingCall begin(const QString& service, const QString& path, const QString& interface,
                           const QString& member, const QVariantList& arguments = {});
    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& member, const QVariantList& arguments = {});
    QVariant ask(const QString& path, const QString& interface, const QString& member,
                 const QVariantList& arguments = {});
    QVariant property(const QString& path, const QString& interface, const QString& name);
    std::optional<QString> serviceOf(qint64 process);
    Questions askAbout(const QString& path);
    static Node read(const Questions& questions);
    /// With all that is below them.
    void addAll(const QStringList& siblings, std::vector<Node>& result);

    DesktopSession& m_session;
    QDBusConnection m_bus;
    QString m_service; // of the application
    std::vector<Event> m_events;
};
