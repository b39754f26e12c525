#include "ScreenReader.h"

#include "DesktopSession.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <stdexcept>

namespace {

const QString connectionName = QStringLiteral("screen-reader");
const QString registry = QStringLiteral("org.a11y.atspi.Registry");
const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

struct Reference
{
    QString service;
    QString path;
};

std::vector<Reference> references(const QVariant& answer)
{
    std::vector<Reference> result;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Reference reference;
        QDBusObjectPath path;
        list.beginStructure();
        list >> reference.service >> path;
        list.endStructure();
        reference.path = path.path();
        result.push_back(reference);
    }
    list.endArray();
    return result;
}

QStringList pathsOf(const QVariant& answer)
{
    QStringList result;
    for (const Reference& reference : references(answer))
        result.append(reference.path);
    return result;
}

quint64 statesOf(const QVariant& answer)
{
    QList<uint> words;
    answer.value<QDBusArgument>() >> words;
    words.resize(2);
    return (quint64{words[1]} << 32U) | words[0];
}

QRect areaOf(const QVariant& answer)
{
    const auto argument = answer.value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return {x, y, width, height};
}

QVariant propertyOf(const QVariant& answer)
{
    return answer.value<QDBusVariant>().variant();
}

/// Throws std::runtime_error where there is none.
QDBusMessage answerTo(QDBusPendingCall call)
{
    call.waitForFinished();
    if (call.isError())
        throw std::runtime_error(call.error().message().toStdString());
    return call.reply();
}

QVariant valueOf(const QDBusPendingCall& call)
{
    return answerTo(call).arguments().value(0);
}

QDBusConnection connectToBus(DesktopSession& session)
{
    const QByteArray address =
        session
            .run("dbus-send", {"--session", "--print-reply=literal", "--dest=org.a11y.Bus",
                               "/org/a11y/bus", "org.a11y.Bus.GetAddress"})
            .trimmed();
    return QDBusConnection::connectToBus(QString::fromLocal8Bit(address), connectionName);
}

} // namespace

ScreenReader::ScreenReader(DesktopSession& session)
    : m_session(session), m_bus(connectToBus(session))
{
    for (const QString& kind : {QStringLiteral("Object"), QStringLiteral("Window")}) {
        m_bus.connect({}, {}, "org.a11y.atspi.Event." + kind, {}, this, SLOT(take(QDBusMessage)));
        call(registry, "/org/a11y/atspi/registry", registry, "RegisterEvent", {kind + ":"});
    }
}

ScreenReader::~ScreenReader()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QDBusPendingCall ScreenReader::begin(const QString& service, const QString& path,
                                     const QString& interface, const QString& member,
                                     const QVariantList& arguments)
{
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, member);
    request.setArguments(arguments);
    return m_bus.asyncCall(request);
}

QDBusMessage ScreenReader::call(const QString& service, const QString& path,
                                const QString& interface, const QString& member,
                                const QVariantList& arguments)
{
    return answerTo(begin(service, path, interface, member, arguments));
}

QVariant ScreenReader::ask(const QString& path, const QString& interface, const QString& member,
                           const QVariantList& arguments)
{
    return call(m_service, path, interface, member, arguments).arguments().value(0);
}

QVariant ScreenReader::property(const QString& path, const QString& interface, const QString& name)
{
    return propertyOf(ask(path, properties, "Get", {interface, name}));
}

std::optional<QString> ScreenReader::serviceOf(qint64 process)
{
    const QVariant answer =
        call(registry, rootPath, accessible, "GetChildren").arguments().value(0);
    for (const Reference& application : references(answer)) {
        const QDBusMessage owner =
            call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                 "GetConnectionUnixProcessID", {application.service});
        if (owner.arguments().value(0).toLongLong() == process)
            return application.service;
    }
    return std::nullopt;
}

void ScreenReader::follow(qint64 process)
{
    m_session.waitUntil("the application to be on the accessibility bus", [&] {
        m_service = serviceOf(process).value_or(QString());
        return !m_service.isEmpty();
    });
}

/// The questions about an object, which are all on their way before the first answer is awaited.
struct ScreenReader::Questions
{
    QString path;
    QDBusPendingCall role;
    QDBusPendingCall name;
    QDBusPendingCall description;
    QDBusPendingCall states;
    QDBusPendingCall area;
    QDBusPendingCall children;
};

ScreenReader::Questions ScreenReader::askAbout(const QString& path)
{
    constexpr uint onScreen = 0;
    const auto ask = [&](const QString& interface, const QString& member,
                         const QVariantList& arguments = {}) {
        return begin(m_service, path, interface, member, arguments);
    };
    return {path,
            ask(accessible, "GetRoleName"),
            ask(properties, "Get", {accessible, "Name"}),
            ask(properties, "Get", {accessible, "Description"}),
            ask(accessible, "GetState"),
            ask("org.a11y.atspi.Component", "GetExtents", {onScreen}),
            ask(accessible, "GetChildren")};
}

ScreenReader::Node ScreenReader::read(const Questions& questions)
{
    Node node;
    node.path = questions.path;
    node.role = valueOf(questions.role).toString().toStdString();
    node.name = propertyOf(valueOf(questions.name)).toString().toStdString();
    node.description = propertyOf(valueOf(questions.description)).toString().toStdString();
    node.states = statesOf(valueOf(questions.states));
    node.area = areaOf(valueOf(questions.area));
    return node;
}

std::vector<ScreenReader::Node> ScreenReader::nodes()
{
    std::vector<Node> result;
    addAll(pathsOf(ask(rootPath, accessible, "GetChildren")), result);
    return result;
}

void ScreenReader::addAll(const QStringList& siblings, std::vector<Node>& result)
{
    std::vector<Questions> questions;
    for (const QString& path : siblings)
        questions.push_back(askAbout(path));
    for (const Questions& asked : questions) {
        try {
            const Node node = read(asked);
            if (!node.is(showing))
                continue;
            const QStringList children = pathsOf(valueOf(asked.children));
            result.push_back(node);
            addAll(children, result);
        } catch (const std::runtime_error&) {
            // It is gone by now.
        }
    }
}

std::optional<ScreenReader::Node> ScreenReader::lookFor(const std::string& role,
                                                        const std::string& name)
{
    for (const Node& node : nodes()) {
        if (node.role == role && node.name == name)
            return node;
    }
    return std::nullopt;
}

ScreenReader::Node ScreenReader::find(const std::string& role, const std::string& name)
{
    std::optional<Node> node;
    m_session.waitUntil(("the " + role + " \"" + name + "\"").c_str(), [&] {
        node = lookFor(role, name);
        return node.has_value();
    });
    return *node;
}

std::optional<ScreenReader::Node> ScreenReader::focus()
{
    for (const Node& node : nodes()) {
        if (node.is(focused) && node.is(focusable)) // what a focus is passed on by says so too
            return node;
    }
    return std::nullopt;
}

std::string ScreenReader::text(const Node& node)
{
    const int end = -1;
    return ask(node.path, "org.a11y.atspi.Text", "GetText", {0, end}).toString().toStdString();
}

double ScreenReader::value(const Node& node)
{
    return property(node.path, "org.a11y.atspi.Value", "CurrentValue").toDouble();
}

void ScreenReader::perform(const Node& node, const QString& action)
{
    const QString interface = QStringLiteral("org.a11y.atspi.Action");
    const int count = property(node.path, interface, "NActions").toInt();
    for (int i = 0; i < count; ++i) {
        if (ask(node.path, interface, "GetName", {i}).toString() == action) {
            ask(node.path, interface, "DoAction", {i});
            return;
        }
    }
    throw std::runtime_error(node.name + " has no action " + action.toStdString());
}

void ScreenReader::take(const QDBusMessage& signal)
{
    if (signal.service() != m_service)
        return;
    const QVariantList arguments = signal.arguments();
    const QString kind = signal.member() + ' ' + arguments.value(0).toString();
    Event event{kind.trimmed().toStdString(), arguments.value(1).toInt(), {}};
    try {
        event.source = read(askAbout(signal.path()));
    } catch (const std::runtime_error&) {
        event.source.path = signal.path(); // gone already
    }
    m_events.push_back(event);
}
