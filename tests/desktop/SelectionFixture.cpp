#include "SelectionFixture.h"

#include "AtSpi.h"

#include <QCoroTask>
#include <QTimer>

#include <signal.h>

SelectionFixture::~SelectionFixture()
{
    // What a grab leaves to the next turn of the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

SelectionFixture::SelectionFixture() : SelectionFixture(DesktopSession::Options{}) {}

SelectionFixture::SelectionFixture(const DesktopSession::Options& options) : m_session(options) {}

QProcess& SelectionFixture::startApp(const QStringList& options, const QString& title,
                                     const QStringList& variables)
{
    QProcess& process = m_session.start(
        "env", variables + QStringList{PITHWISE_DESKTOP_APP, "--title", title} + options);
    waitUntilInFront(m_session.waitForWindow({"--name", "^" + title + "$"}));
    return process;
}

void SelectionFixture::waitUntilInFront(std::uint32_t window)
{
    m_session.waitUntil("a window to come to the front", [&] {
        // Without this a small machine's test process would not answer as a client.
        QCoreApplication::processEvents();
        return m_session.isInFront(window);
    });
}

void SelectionFixture::mouse(const QStringList& actions)
{
    m_session.xdotool(actions);
    // The server has told of it by the time it answers another program.
    m_session.xdotool({"getmouselocation"});
    QCoreApplication::processEvents();
    m_sinceMouse.start();
}

void SelectionFixture::drag(std::uint32_t window, const QPoint& from, int right, int down)
{
    mouse({"mousemove", "--window", QString::number(window), QString::number(from.x()),
           QString::number(from.y())});
    mouse({"mousedown", "1"});
    // The first motion may do no more than tell the program that this is a drag.
    for (int half = 0; half < 2; ++half)
        mouse({"mousemove_relative", "--", QString::number(right / 2), QString::number(down / 2)});
    mouse({"mouseup", "1"});
}

void SelectionFixture::letClicksPass()
{
    constexpr int longest = 500; // milliseconds between the two, in any program
    m_session.waitUntil("the last click to have passed", [this] {
        QCoreApplication::processEvents();
        return !m_sinceMouse.isValid() || m_sinceMouse.hasExpired(longest);
    });
}

void SelectionFixture::selectAll(const QByteArray& text)
{
    m_session.xdotool({"key", "ctrl+a"});
    m_session.waitUntil("the text to be selected", [&] {
        QCoreApplication::processEvents();
        return selection("primary").contains(text);
    });
}

QByteArray SelectionFixture::selection(const QString& name, const QString& target)
{
    return m_clipboard.read(name, target);
}

void SelectionFixture::waitUntilSelectionIsNot(const QByteArray& old)
{
    m_session.waitUntil("something else to be selected", [&] {
        const QByteArray now = selection("primary");
        return !now.isEmpty() && now != old;
    });
}

QByteArray SelectionFixture::clipboard(const QString& target)
{
    return selection("clipboard", target);
}

void SelectionFixture::putOnClipboard(const QByteArray& text)
{
    m_clipboard.put(text);
}

SelectionFixture::Text SelectionFixture::grab()
{
    QTimer turn;
    m_turns = 0;
    QObject::connect(&turn, &QTimer::timeout, [this] { ++m_turns; });
    turn.start(5);
    return QCoro::waitFor(SelectionGrabber::grab(m_ports));
}

bool SelectionFixture::succeeds(const std::function<bool()>& attempt)
{
    constexpr int most = 5;
    for (int i = 0; i < most; ++i) {
        if (attempt())
            return true;
    }
    return false;
}

void SelectionFixture::expectGrab(const std::string& text)
{
    std::string grabbed;
    succeeds([&] { return (grabbed = grab().value_or("(nothing)")) == text; });
    EXPECT_EQ(grabbed, text);
}

void SelectionFixture::expectGrabWithoutCopy(const std::string& text)
{
    EXPECT_TRUE(succeeds([&] {
        const std::uint64_t count = m_ports.pasteboard->changeCount();
        return grab() == text && m_ports.pasteboard->changeCount() == count;
    })) << text;
}

void SelectionFixture::expectGrabOver(const QByteArray& earlier, const std::string& text)
{
    EXPECT_TRUE(succeeds([&] {
        putOnClipboard(earlier);
        return grab() == text;
    })) << text;
    EXPECT_EQ(clipboard(), earlier);
}

void SelectionFixture::stop(const QProcess& process)
{
    ::kill(static_cast<pid_t>(process.processId()), SIGSTOP);
}

void SelectionFixture::resume(const QProcess& process)
{
    ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
}

void SelectionFixture::startAccessibilityBus()
{
    m_session.run("dbus-send", {"--session", "--print-reply", "--dest=org.a11y.Bus",
                                "/org/a11y/bus", "org.a11y.Bus.GetAddress"});
}

QProcess& SelectionFixture::startAccessibleApp(const QStringList& options)
{
    startAccessibilityBus();
    return startApp(options, "Foreign", {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
}

std::string SelectionFixture::waitUntilTold(const QProcess& application)
{
    AtSpi atSpi;
    Text text;
    m_session.waitUntil("the application to tell its selection", [&] {
        QCoreApplication::processEvents();
        text = atSpi.selectedText(static_cast<pid_t>(application.processId()),
                                  std::chrono::seconds(1));
        return text.has_value();
    });
    return *text;
}
