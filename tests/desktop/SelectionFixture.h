#pragma once

#include "Accessibility.h"
#include "DesktopSession.h"
#include "ForeignClipboard.h"
#include "KeyEvents.h"
#include "Pasteboard.h"
#include "SelectionGrabber.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPoint>
#include <QProcess>

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>

/// A desktop with foreign applications on it, and the real ports.
class SelectionFixture : public testing::Test
{
public:
    ~SelectionFixture() override;

protected:
    using Text = std::optional<std::string>;

    SelectionFixture();
    explicit SelectionFixture(const DesktopSession::Options& options);

    /// Starts a foreign application and returns when it is in front.
    QProcess& startApp(const QStringList& options, const QString& title = "Foreign",
                       const QStringList& variables = {});

    void waitUntilInFront(std::uint32_t window);

    /// Does with the mouse what `actions` of xdotool say, and has this process look at it while the
    /// pointer is there.
    void mouse(const QStringList& actions);

    /// Drags from a point in `window` by an even number of pixels each way.
    void drag(std::uint32_t window, const QPoint& from, int right, int down);

    /// Waits until a click will be no part of a double click.
    void letClicksPass();

    /// Selects all the text of the application in front and returns when it says so.
    void selectAll(const QByteArray& text);

    /// What another program reads of a selection; empty where there is nothing.
    QByteArray selection(const QString& name, const QString& target = "UTF8_STRING");

    /// Returns when something else than `old` is the primary selection.
    void waitUntilSelectionIsNot(const QByteArray& old);

    QByteArray clipboard(const QString& target = "UTF8_STRING");

    /// Puts `text` on the clipboard, as another program's.
    void putOnClipboard(const QByteArray& text);

    /// The result of a grab, during which the turns of the main thread's event loop are counted.
    Text grab();

    /// Whether one of a few attempts succeeds: where the machine is busy, an application may take
    /// longer than a grab may wait for it.
    static bool succeeds(const std::function<bool()>& attempt);

    /// Expects that a grab comes to `text`, after a few attempts at the latest.
    void expectGrab(const std::string& text);

    /// The same of one that asks nobody to copy anything.
    void expectGrabWithoutCopy(const std::string& text);

    /// The same of one that leaves `earlier` on the clipboard, where it has been before.
    void expectGrabOver(const QByteArray& earlier, const std::string& text);

    /// Freezes a program. Until it is resumed, only a limit of time ends a wait for it.
    static void stop(const QProcess& process);
    static void resume(const QProcess& process);

    /// As on a desktop where applications may tell what they show.
    void startAccessibilityBus();

    /// Starts a Qt application that tells what it shows.
    QProcess& startAccessibleApp(const QStringList& options);

    /// What `application`, which has text selected, tells, once the registry knows of it.
    std::string waitUntilTold(const QProcess& application);

    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    DesktopSession m_session;
    QApplication m_application{m_argc, m_argv};
    ForeignClipboard m_clipboard{m_session};
    SelectionGrabber::Ports m_ports = SelectionGrabber::systemPorts();
    int m_turns = 0;
    QElapsedTimer m_sinceMouse;
};
