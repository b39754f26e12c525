#include "AtSpi.h"

#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QFile>
#include <QMap>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <atomic>

namespace {

const QString registry = QStringLiteral("org.a11y.atspi.Registry");
const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString textInterface = QStringLiteral("org.a11y.atspi.Text");

constexpr quint64 isActive = quint64{1} << 1U;
constexpr quint64 isFocused = quint64{1} << 12U;
constexpr quint64 isShowing = quint64{1} << 25U;
constexpr uint paragraphRole = 73;
constexpr int maximumNodes = 5000;     // that are looked at in one window
constexpr int maximumChildren = 1000;  // of one element
constexpr int maximumSelections = 100; // of one element
constexpr int maximumFocused = 50;     // Kate has about twenty
// How many questions are sent at once. All D-Bus connections of the process share one thread, which
// must never be busy for more than a few milliseconds with ours.
constexpr int questionsAtOnce = 100;

// The character that stands in a text for an embedded element, whose own text is not part of the
// answer.
constexpr char16_t embeddedObject = u'\xFFFC';

/// The address of the session bus, empty if there is none. D-Bus libraries are not asked for it: if
/// there is no bus they would start one of their own, which nobody else uses, and they keep to the
/// first address that they have found.
QString sessionBusAddress()
{
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus";
    if (!address.isEmpty() || !QFile::exists(socket))
        return address;
    return "unix:path=" + QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}

/// The rule that makes Collection.GetMatches look for objects that have the keyboard.
QVariant focusedRule()
{
    enum MatchType { all = 1 };
    QDBusArgument rule;
    rule.beginStructure();
    rule << QList<int>{static_cast<int>(isFocused), 0} << int{all};
    rule << QMap<QString, QString>() << int{all};
    rule << QList<int>{} << int{all};
    rule << QStringList{} << int{all};
    rule << false;
    rule.endStructure();
    return QVariant::fromValue(rule);
}

} // namespace

AtSpi::~AtSpi()
{
    m_bus.reset();
    if (!m_connectionName.isEmpty())
        QDBusConnection::disconnectFromBus(m_connectionName);
}

int AtSpi::millisecondsLeft() const
{
    return static_cast<int>(
        std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now()).count());
}

QDBusMessage AtSpi::message(const Object& object, const QString& interface, const QString& member,
                            const QVariantList& arguments) const
{
    QDBusMessage request =
        QDBusMessage::createMethodCall(object.service, object.path, interface, member);
    request.setArguments(arguments);
    request.setAutoStartService(false);
    return request;
}

/// The answer, empty upon an error. After the deadline every call ends in an error.
QVariantList AtSpi::call(const QDBusMessage& request)
{
    const int left = millisecondsLeft();
    if (left <= 0) {
        m_hasTimedOut = true;
        return {};
    }
    const QDBusMessage answer = m_bus->call(request, QDBus::Block, left);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return answer.arguments();
    m_hasTimedOut = m_hasTimedOut || millisecondsLeft() <= 0;
    return {};
}

bool AtSpi::connect()
{
    if (m_bus && m_bus->isConnected())
        return true;
    const QString sessionBus = sessionBusAddress();
    if (sessionBus.isEmpty())
        return false;
    // Connections of our own, so that no other use of D-Bus in the process waits for these calls.
    static std::atomic<int> number = 0;
    const QString name = QStringLiteral("pithwise-accessibility-%1").arg(++number);
    m_bus = QDBusConnection::connectToBus(sessionBus, name + "-session");
    const QVariantList answer =
        call(message({"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress"));
    m_bus.reset();
    QDBusConnection::disconnectFromBus(name + "-session");
    if (answer.isEmpty() || answer[0].toString().isEmpty())
        return false;
    if (!m_connectionName.isEmpty())
        QDBusConnection::disconnectFromBus(m_connectionName);
    m_connectionName = name;
    m_bus = QDBusConnection::connectToBus(answer[0].toString(), name);
    return m_bus->isConnected();
}

QList<AtSpi::Object> AtSpi::objects(const QVariantList& answer)
{
    QList<Object> result;
    if (answer.isEmpty() || answer[0].userType() != qMetaTypeId<QDBusArgument>())
        return result;
    const auto list = answer[0].value<QDBusArgument>();
    if (list.currentSignature() != "a(so)")
        return result;
    list.beginArray();
    while (!list.atEnd()) {
        Object object;
        QDBusObjectPath path;
        list.beginStructure();
        list >> object.service >> path;
        list.endStructure();
        object.path = path.path();
        result.append(object);
    }
    list.endArray();
    return result;
}

/// The children of `parent`. Empty if there are more than `maximumChildren`: that answer alone
/// could take seconds.
QList<AtSpi::Object> AtSpi::children(const Object& parent)
{
    const QVariantList count = call(message(parent, "org.freedesktop.DBus.Properties", "Get",
                                            {QString(accessible), QString("ChildCount")}));
    const int children = count.isEmpty() ? 0 : count[0].value<QDBusVariant>().variant().toInt();
    if (children <= 0 || children > maximumChildren)
        return {};
    return objects(call(message(parent, accessible, "GetChildren")));
}

/// The root object of the application that runs as `process`.
std::optional<AtSpi::Object> AtSpi::application(pid_t process)
{
    for (const Object& root : children({registry, rootPath})) {
        const QVariantList answer =
            call(message({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", {root.service}));
        if (!answer.isEmpty() && answer[0].toUInt() == static_cast<uint>(process))
            return root;
    }
    return std::nullopt;
}

/// The window of `application` that has the keyboard. Other windows may also have a focused
/// element, from the time when they had the keyboard. Chromium does not always say which window is
/// active; then the answer is known only if just one is shown.
std::optional<AtSpi::Object> AtSpi::activeWindowOf(const Object& application)
{
    QList<Object> shown;
    const QList<Object> windows = children(application);
    const QList<States> windowStates = states(windows);
    for (qsizetype i = 0; i < windows.size(); ++i) {
        if ((windowStates[i] & isActive) != 0)
            return windows[i];
        if ((windowStates[i] & isShowing) != 0)
            shown.append(windows[i]);
    }
    return shown.size() == 1 ? std::optional(shown.front()) : std::nullopt;
}

/// Whether `application` uses Chromium, whose ranges come out too small: by the number of
/// characters before them that take a pair of UTF-16 units.
bool AtSpi::isMiscounting(const Object& application)
{
    const QVariantList answer =
        call(message(application, "org.freedesktop.DBus.Properties", "Get",
                     {QString("org.a11y.atspi.Application"), QString("ToolkitName")}));
    return !answer.isEmpty() && answer[0].value<QDBusVariant>().variant().toString() == "Chromium";
}

/// Whether no character in `object` before `end` takes a pair of UTF-16 units.
bool AtSpi::isWithoutPairs(const Object& object, int end)
{
    const QVariantList answer = call(message(object, textInterface, "GetText", {0, end}));
    const QString text = answer.isEmpty() ? QString() : answer[0].toString();
    return !text.isEmpty() &&
           std::none_of(text.begin(), text.end(), [](QChar unit) { return unit.isSurrogate(); });
}

/// How many pieces of text are selected in `object`, if it has text.
std::optional<int> AtSpi::selectionsOf(const Object& object)
{
    const QVariantList count = call(message(object, textInterface, "GetNSelections"));
    return count.isEmpty() ? std::nullopt : std::optional(count[0].toInt());
}

/// Whether other elements may be selected together with `object`. Word processors have an element
/// for every paragraph, of which only one has the keyboard.
bool AtSpi::isPartOfDocument(const Object& object)
{
    const QVariantList role = call(message(object, accessible, "GetRole"));
    return role.isEmpty() || role[0].toUInt() == paragraphRole;
}

/// The text selected in `object`. If several pieces of text are selected, each is a line. Nothing
/// if the text could be incomplete.
std::optional<std::string> AtSpi::textOf(const Object& object)
{
    const int selections = std::min(selectionsOf(object).value_or(0), maximumSelections);
    QStringList pieces;
    for (int i = 0; i < selections; ++i) {
        const QVariantList range = call(message(object, textInterface, "GetSelection", {i}));
        if (range.size() < 2 || range[0].toInt() == range[1].toInt())
            continue;
        if (m_isMiscounting && !isWithoutPairs(object, range[1].toInt()))
            return std::nullopt;
        const QVariantList text =
            call(message(object, textInterface, "GetText", {range[0].toInt(), range[1].toInt()}));
        if (!text.isEmpty())
            pieces.append(text[0].toString());
    }
    const QString whole = pieces.join('\n');
    // A piece that had not come by the deadline would be missing.
    if (m_hasTimedOut || whole.isEmpty() || whole.contains(embeddedObject) ||
        isPartOfDocument(object))
        return std::nullopt;
    return whole.toStdString();
}

/// The elements in `window` that have the keyboard, found by the application's own search. Not
/// every toolkit has such a search.
QList<AtSpi::Object> AtSpi::focused(const Object& window)
{
    const int canonicalOrder = 1;
    const bool wholeTree = true;
    return objects(call(message(window, "org.a11y.atspi.Collection", "GetMatches",
                                {focusedRule(), uint{canonicalOrder}, maximumFocused, wholeTree})));
}

AtSpi::States AtSpi::statesOf(const QVariantList& answer)
{
    if (answer.isEmpty() || answer[0].userType() != qMetaTypeId<QDBusArgument>())
        return 0;
    const auto list = answer[0].value<QDBusArgument>();
    if (list.currentSignature() != "au")
        return 0;
    QList<uint> words;
    list >> words;
    words.resize(2);
    return (States{words[1]} << 32U) | words[0];
}

/// Adds the states of `some` to `states`. All are asked for at once, so that there is only one
/// wait.
void AtSpi::addStates(QList<States>& states, const QList<Object>& some)
{
    QList<QDBusPendingCall> calls;
    for (const Object& object : some)
        calls.append(m_bus->asyncCall(message(object, accessible, "GetState"),
                                      std::max(1, millisecondsLeft())));
    for (QDBusPendingCall& pending : calls) {
        pending.waitForFinished();
        states.append(pending.isError() ? 0 : statesOf(pending.reply().arguments()));
    }
}

/// The states of all `objects`; 0 for those that could not be had in time.
QList<AtSpi::States> AtSpi::states(const QList<Object>& objects)
{
    QList<States> result;
    for (qsizetype i = 0; i < objects.size() && millisecondsLeft() > 0; i += questionsAtOnce)
        addStates(result, objects.mid(i, questionsAtOnce));
    m_hasTimedOut = m_hasTimedOut || millisecondsLeft() <= 0;
    result.resize(objects.size());
    return result;
}

/// Visits the elements that have the keyboard by looking at everything on the screen in `window`,
/// from the top, until `isFound` returns true. The window itself may be the first.
void AtSpi::walk(const Object& window, const Visitor& isFound)
{
    if (isFound(window))
        return;
    QList<Object> parents = {window};
    qsizetype nodes = 0;
    while (!parents.isEmpty() && !m_hasTimedOut && nodes < maximumNodes) {
        const QList<Object> level = children(parents.takeLast());
        const QList<States> levelStates = states(level);
        nodes += level.size();
        for (qsizetype i = 0; i < level.size(); ++i) {
            if ((levelStates[i] & isFocused) != 0 && isFound(level[i]))
                return;
        }
        for (qsizetype i = level.size() - 1; i >= 0; --i) {
            if ((levelStates[i] & isShowing) != 0)
                parents.append(level[i]);
        }
    }
}

/// Visits the elements in `window` that have the keyboard until `isFound` returns true.
void AtSpi::visitFocused(const Object& window, const Visitor& isFound)
{
    const QList<Object> found = focused(window);
    if (found.isEmpty())
        walk(window, isFound);
    else
        static_cast<void>(std::any_of(found.begin(), found.end(), isFound));
}

/// The active window of `process`. All further questions share this call's `limit`.
std::optional<AtSpi::Object> AtSpi::activeWindow(pid_t process, std::chrono::milliseconds limit)
{
    m_deadline = Clock::now() + limit;
    m_hasTimedOut = false;
    if (process <= 0 || !connect())
        return std::nullopt;
    const auto root = application(process);
    if (!root)
        return std::nullopt;
    m_isMiscounting = isMiscounting(*root);
    return activeWindowOf(*root);
}

std::optional<std::string> AtSpi::selectedText(pid_t process, std::chrono::milliseconds limit)
{
    std::optional<std::string> text;
    if (const auto window = activeWindow(process, limit))
        visitFocused(*window,
                     [&](const Object& object) { return (text = textOf(object)).has_value(); });
    return text;
}

std::optional<bool> AtSpi::hasSelection(pid_t process, std::chrono::milliseconds limit)
{
    std::optional<bool> result;
    if (const auto window = activeWindow(process, limit)) {
        visitFocused(*window, [&](const Object& object) {
            if (const auto selections = selectionsOf(object))
                result = *selections > 0;
            return result.value_or(false);
        });
    }
    return result;
}
