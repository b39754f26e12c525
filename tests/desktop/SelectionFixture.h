#pragma once

#include "Accessibility.h"
#include "DesktopSession.h"
#include "ForeignClipboard.h"
#include "KeyEvents.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"
#include "linux/AtSpi.h"

#include <QApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <gmock/gmock.h>
#include <signal.h>

#include <optional>
#include <string>

/// A desktop with foreign applications on it, and the real ports.
class SelectionFixture : public testing::Test
{
public:
    ~SelectionFixture() override
    {
        // What a grab leaves to the next turn of the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

protected:
    using Text = std::optional<std::string>;

    SelectionFixture() : SelectionFixture(DesktopSession::Options{}) {}
    explicit SelectionFixture(const DesktopSession::Options& options) : m_session(options) {}

    /// Starts a foreign application and returns when it is in front.
    QProcess& startApp(const QStringList& options, const QString& title = "Foreign",
                       const QStringList& variables = {})
    {
        QProcess& process = m_session.start(
            "env", variables + QStringList{PITHWISE_DESKTOP_APP, "--title", title} + options);
        waitUntilInFront(m_session.waitForWindow({"--name", "^" + title + "$"}));
        return process;
    }

    void waitUntilInFront(std::uint32_t window)
    {
        m_session.waitUntil("a window to come to the front", [&] {
            // Without this a small machine's test process would not answer as a client.
            QCoreApplication::processEvents();
            return m_session.isInFront(window);
        });
    }

    /// Selects all the text of the application in front and returns when it says so.
    void selectAll(const QByteArray& text)
    {
        m_session.xdotool({"key", "ctrl+a"});
        m_session.waitUntil("the text to be selected", [&] {
            QCoreApplication::processEvents();
            return selection("primary").contains(text);
        });
    }

    /// What another program reads of a selection; empty where there is nothing.
    QByteArray selection(const QString& name, const QString& target = "UTF8_STRING")
    {
        return m_clipboard.read(name, target);
    }

    QByteArray clipboard(const QString& target = "UTF8_STRING")
    {
        return selection("clipboard", target);
    }

    /// Puts `text` on the clipboard, as another program's.
    void putOnClipboard(const QByteArray& text) { m_clipboard.put(text); }

    /// The result of a grab, whose time and turns of the main thread's event loop are noted.
    Text grab()
    {
        QTimer turn;
        m_turns = 0;
        QObject::connect(&turn, &QTimer::timeout, [this] { ++m_turns; });
        turn.start(5);
        QElapsedTimer timer;
        timer.start();
        Text text = QCoro::waitFor(SelectionGrabber::grab(m_ports));
        m_milliseconds = timer.elapsed();
        return text;
    }

    static void stop(const QProcess& process)
    {
        ::kill(static_cast<pid_t>(process.processId()), SIGSTOP);
    }
    static void resume(const QProcess& process)
    {
        ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
    }

    /// As on a desktop where applications may tell what they show.
    void startAccessibilityBus()
    {
        m_session.run("dbus-send", {"--session", "--print-reply", "--dest=org.a11y.Bus",
                                    "/org/a11y/bus", "org.a11y.Bus.GetAddress"});
    }

    /// Starts a Qt application that tells what it shows.
    QProcess& startAccessibleApp(const QStringList& options)
    {
        startAccessibilityBus();
        return startApp(options, "Foreign", {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
    }

    /// What `application`, which has text selected, tells, once the registry knows of it.
    std::string waitUntilTold(const QProcess& application)
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

    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    DesktopSession m_session;
    QApplication m_application{m_argc, m_argv};
    ForeignClipboard m_clipboard{m_session};
    SelectionGrabber::Ports m_ports = SelectionGrabber::systemPorts();
    qint64 m_milliseconds = 0;
    int m_turns = 0;
};
