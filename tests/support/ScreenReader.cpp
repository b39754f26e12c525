#include "ScreenReader.h"

#include "DesktopSession.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>

#include <stdexcept>

namespace {

const QString connectionName = QStringLiteral("screen-reader");
const QString registry = QStringLiteral("org.a11y.atspi.Registry");
const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");

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

QDBusMessage ScreenReader::call(const QString& service, const QString& path,
                                const QString& interface, const QString& member,
                                const QVariantList& arguments)
{
    QDBusMessage request = QDBusMessage::createMethodCall(service, path, interface, member);
    request.setArguments(arguments);
    QDBusMessage answer = m_bus.call(request);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(
            QString("%1 of %2: %3").arg(member, path, answer.errorMessage()).toStdString());
    return answer;
}

QVariant ScreenReader::ask(const QString& path, const QString& interface, const QString& member,
                           const QVariantList& arguments)
{
    return call(m_service, path, interface, member, arguments).arguments().value(0);
}

QVariant ScreenReader::property(const QString& path, const QString& interface, const QString& name)
{
    return ask(path, "org.freedesktop.DBus.Properties", "Get", {interface, name})
        .value<QDBusVariant>()
        .variant();
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

std::vector<QString> ScreenReader::children(const QString& path)
{
    std::vector<QString> result;
    for (const Reference& child : references(ask(path, accessible, "GetChildren")))
        result.push_back(child.path);
    return result;
}

ScreenReader::Node ScreenReader::read(const QString& path)
{
    constexpr uint onScreen = 0;
    Node node;
    node.path = path;
    node.role = ask(path, accessible, "GetRoleName").toString().toStdString();
    node.name = property(path, accessible, "Name").toString().toStdString();
    node.description = property(path, accessible, "Description").toString().toStdString();
    node.states = statesOf(ask(path, accessible, "GetState"));
    node.area = areaOf(ask(path, "org.a11y.atspi.Component", "GetExtents", {onScreen}));
    return node;
}

std::vector<ScreenReader::Node> ScreenReader::nodes()
{
    std::vector<Node> result;
    std::vector<QString> waiting = children(rootPath);
    while (!waiting.empty()) {
        const QString path = waiting.back();
        waiting.pop_back();
        try {
            const Node node = read(path);
            if (!node.is(showing))
                continue;
            const std::vector<QString> below = children(path);
            result.push_back(node);
            waiting.insert(waiting.end(), below.rbegin(), below.rend());
        } catch (const std::runtime_error&) {
            // It is gone by now.
        }
    }
    return result;
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
        event.source = read(signal.path());
    } catch (const std::runtime_error&) {
        event.source.path = signal.path(); // gone already
    }
    m_events.push_back(event);
}
