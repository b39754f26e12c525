#include "ApplicationFixture.h"
#include "CoreDumpLimit.h"
#include "Program.h"
#include "TestWindow.h"

#include <QFile>
#include <QFileInfo>

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace {

/// Whether a window of another program goes from the screen, for however short a time.
class HideWatch
{
public:
    HideWatch(DesktopSession& session, xcb_window_t window)
        : m_connection(xcb_connect(session.display().constData(), nullptr))
    {
        const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &events);
        sync();
    }
    ~HideWatch() { xcb_disconnect(m_connection); }
    HideWatch(const HideWatch&) = delete;
    HideWatch& operator=(const HideWatch&) = delete;

    bool wasHidden()
    {
        sync();
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
            constexpr int sent = 0x80; // by a program rather than the server
            m_wasHidden |= (event->response_type & ~sent) == XCB_UNMAP_NOTIFY;
            std::free(event);
        }
        return m_wasHidden;
    }

private:
    /// Returns once the server has done and told all that it has been asked for.
    void sync()
    {
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    xcb_connection_t* m_connection;
    bool m_wasHidden = false;
};

class ApplicationTest : public ApplicationFixture
{
protected:
    void toggle() { EXPECT_EQ(run({"toggle"}), 0) << m_error; }

    void show()
    {
        toggle();
        waitUntilShown();
        waitUntilInFront(popover());
    }

    /// In a quiet moment: what the mouse and the keyboard have told the application by now.
    void expectStillShown()
    {
        ASSERT_TRUE(isAnswering());
        ASSERT_TRUE(isAnswering());
        EXPECT_TRUE(isShown());
    }
};

TEST_F(ApplicationTest, NothingIsShownAtTheStart)
{
    launch();
    EXPECT_FALSE(isShown());
}

TEST_F(ApplicationTest, ATerminalIsToldHowToShowIt)
{
    Program program(Program::Output::terminal);
    program.start({"--model", standin()});
    ASSERT_TRUE(program.waitForOutput());
    program.interrupt();
    EXPECT_EQ(program.finish(), 0);
    EXPECT_EQ(program.output(),
              "Pithwise is in the tray. Its icon or \"pithwise toggle\" shows it, Ctrl+C here ends "
              "it.\r\n");
    EXPECT_EQ(program.error(), "");
}

TEST_F(ApplicationTest, ToggleShowsAndHides)
{
    launch();
    show();
    toggle();
    waitUntilHidden();
}

TEST_F(ApplicationTest, EscapeClosesAndGivesTheKeyboardBack)
{
    launch();
    const std::uint32_t foreign = startApp({"--editor", "text"});
    show();
    m_session.xdotool({"key", "Escape"});
    waitUntilHidden();
    waitUntilInFront(foreign);
}

TEST_F(ApplicationTest, ALeftClickInAnotherApplicationCloses)
{
    launch();
    const QRect foreign = areaOf(startApp({"--editor", "text"}));
    show();
    click(foreign.topLeft() + QPoint(20, 20), 1);
    waitUntilHidden();
}

TEST_F(ApplicationTest, ARightClickInAnotherApplicationCloses)
{
    launch();
    const QRect foreign = areaOf(startApp({"--editor", "text"}));
    show();
    click(foreign.topLeft() + QPoint(20, 20), 3);
    waitUntilHidden();
}

TEST_F(ApplicationTest, AnUnmanagedWindowThatHelpsToWriteMayBeClicked)
{
    launch();
    TestWindow candidates(m_session, {100, 700, 300, 100}); // of an input method
    candidates.makeUnmanaged();
    candidates.show();
    show();
    click({200, 750});
    expectStillShown();
}

TEST_F(ApplicationTest, OnAnotherWorkspaceToggleShowsItThere)
{
    launch();
    show();
    const std::uint32_t shown = popover();
    for (const int workspace : {1, 0}) {
        m_session.xdotool({"set_desktop", QString::number(workspace)});
        waitUntilHidden();
        toggle();
        waitUntilShown();
        waitUntilInFront(shown);
        EXPECT_EQ(m_session.xdotool({"get_desktop"}).trimmed().toInt(), workspace);
        EXPECT_EQ(
            m_session.xdotool({"get_desktop_for_window", QString::number(shown)}).trimmed().toInt(),
            workspace);
    }
    toggle();
    waitUntilHidden();
}

TEST_F(ApplicationTest, TheHotkeyOnAnotherWorkspaceShowsItThere)
{
    launch();
    show();
    const std::uint32_t shown = popover();
    m_session.xdotool({"set_desktop", "1"});
    waitUntilHidden();
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilShown();
    waitUntilInFront(shown);
    EXPECT_EQ(m_session.xdotool({"get_desktop"}).trimmed(), "1");
}

TEST_F(ApplicationTest, ItIsInNoTaskbarOrPagerAndHasTheProgramsIcon)
{
    launch();
    for (int i = 0; i < 2; ++i) {
        show();
        const QByteArray state = m_session.property(popover(), "_NET_WM_STATE");
        for (const char* expected : {"SKIP_TASKBAR", "SKIP_PAGER", "ABOVE"})
            EXPECT_TRUE(state.contains(expected)) << expected << " in " << state.toStdString();
        EXPECT_FALSE(m_session.property(popover(), "_NET_WM_ICON").contains("not found"));
        toggle();
        waitUntilHidden();
    }
}

TEST_F(ApplicationTest, TheHotkeyDoesNotHideAPopoverThatIsInNobodysWay)
{
    launch();
    show();
    const std::uint32_t shown = popover();
    const QRect area = areaOf(shown);
    TestWindow window(m_session, {20, 300, 400, 300}); // with nothing to select or to read
    window.show();
    ASSERT_FALSE(area.intersects(areaOf(window.id())));
    m_session.xdotool({"windowactivate", QString::number(window.id())});
    waitUntilInFront(window.id());
    HideWatch watch(m_session, shown);
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilInFront(shown);
    ASSERT_TRUE(isAnswering());
    EXPECT_FALSE(watch.wasHidden());
}

TEST_F(ApplicationTest, AClickOnTheEmptyDesktopCloses)
{
    launch();
    show();
    click({300, 700});
    waitUntilHidden();
}

TEST_F(ApplicationTest, AClickInsideDoesNotClose)
{
    launch();
    show();
    for (const int button : {1, 3})
        click(areaOf(popover()).center(), button);
    expectStillShown();
}

TEST_F(ApplicationTest, TheWheelDoesNotClose)
{
    launch();
    show();
    for (const int button : {4, 5, 2})
        click({300, 700}, button);
    expectStillShown();
}

TEST_F(ApplicationTest, TheHotkeySummarizesAndThenShows)
{
    launch();
    startApp({"--editor", "Some text to select."});
    m_session.xdotool({"key", "ctrl+a"});
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilShown();
    waitUntilInFront(popover());
}

TEST_F(ApplicationTest, AClipboardThatWasPutBackOutlivesTheApplication)
{
    QFile file(m_session.path("clipboard"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("<b>earlier</b>") > 0);
    file.close();
    QProcess& earlier = m_session.start(
        "xclip", {"-quiet", "-selection", "clipboard", "-t", "text/html", "-i", file.fileName()});
    QProcess& process = launch();
    startApp({"--copies", "copied"});
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilShown();
    ASSERT_TRUE(earlier.waitForFinished()); // because it is another's clipboard now
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(m_session.run("xclip", {"-o", "-selection", "clipboard", "-t", "text/html"}),
              "<b>earlier</b>");
}

TEST_F(ApplicationTest, TheHotkeyGivesAPopoverThatIsShownTheKeyboardAgain)
{
    launch();
    const std::uint32_t foreign = startApp({"--editor", "text"});
    show();
    const std::uint32_t first = popover();
    m_session.xdotool({"windowactivate", QString::number(foreign)});
    waitUntilInFront(foreign);
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilInFront(first);
    EXPECT_EQ(popover(), first);
}

TEST_F(ApplicationTest, TheHotkeyPressedTwiceQuicklyShowsOnce)
{
    const QProcess& process = launch();
    startApp({"--editor", "Some text to select."});
    m_session.xdotool({"key", "ctrl+a"});
    m_session.xdotool({"key", "ctrl+alt+s", "key", "ctrl+alt+s"});
    waitUntilShown();
    ASSERT_TRUE(isAnswering());
    ASSERT_TRUE(isAnswering());
    waitUntilShown(); // it may have been away for a picture of what is below it
    EXPECT_EQ(process.state(), QProcess::Running);
}

TEST_F(ApplicationTest, AHotkeyOfAnotherProgramIsNoError)
{
    TestWindow other(m_session);
    other.grabKey(39, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    QProcess& process = launch();
    m_session.xdotool({"key", "ctrl+alt+s"});
    show();
    EXPECT_EQ(process.readAllStandardError(), "");
}

TEST_F(ApplicationTest, ACommandAsksTheRunningApplicationForTheHotkey)
{
    launch();
    startApp({"--editor", "Some text to select."});
    m_session.xdotool({"key", "ctrl+a"});
    EXPECT_EQ(run({"hotkey"}), 0) << m_error;
    waitUntilShown();
}

TEST_F(ApplicationTest, ASecondStartShowsAndHidesTheFirst)
{
    const QProcess& process = launch();
    EXPECT_EQ(run({}), 0) << m_error;
    waitUntilShown();
    EXPECT_EQ(run({}), 0) << m_error;
    waitUntilHidden();
    EXPECT_EQ(process.state(), QProcess::Running);
}

TEST_F(ApplicationTest, AFirstOneThatHangsIsOneSentence)
{
    const QProcess& process = launch();
    ::kill(static_cast<pid_t>(process.processId()), SIGSTOP);
    // It waits for as long as libraries do where nothing else is said.
    QProcess& patient =
        m_session.start("dbus-send", QStringList("--reply-timeout=25000") + introspection());
    for (const char* command : {"", "toggle", "hotkey"}) {
        EXPECT_EQ(run(*command == '\0' ? QStringList() : QStringList(command)), 1);
        EXPECT_EQ(
            m_error,
            "pithwise: Pithwise is running but does not answer. End it and start it again.\n");
    }
    EXPECT_FALSE(patient.waitForFinished(1));
    EXPECT_EQ(patient.state(), QProcess::Running);
    ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
}

TEST_F(ApplicationTest, AFirstOneThatWasKilledIsReplaced)
{
    QProcess& process = launch();
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(run({"toggle"}), 1);
    EXPECT_EQ(m_error, "pithwise: Pithwise is not running. Start it with \"pithwise\".\n");
    launch();
    show();
}

TEST_F(ApplicationTest, ManyStartedAtOnceAreOne)
{
    std::vector<QProcess*> processes;
    for (int i = 0; i < 6; ++i)
        processes.push_back(&m_session.start(Program::path(), {"--model", standin()}));
    const auto running = [&] {
        return std::count_if(processes.begin(), processes.end(), [](QProcess* process) {
            return !process->waitForFinished(1) && process->state() == QProcess::Running;
        });
    };
    m_session.waitUntil("all others to end", [&] { return running() == 1; });
    EXPECT_TRUE(isAnswering());
}

TEST_F(ApplicationTest, WithoutADisplayThatIsOneSentence)
{
    for (const QStringList& variables :
         {QStringList{"-u", "DISPLAY"}, QStringList{"DISPLAY=:9999"}}) {
        QProcess& process = m_session.start("env", variables + QStringList(Program::path()));
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_EQ(process.readAllStandardError(),
                  "pithwise: There is no display to show Pithwise on. On the command line it works "
                  "without one: see \"pithwise --help\".\n");
    }
}

TEST_F(ApplicationTest, AModelFileThatIsNotThereIsOneSentence)
{
    EXPECT_EQ(run({"--model", "./nowhere.gguf"}), 1);
    EXPECT_EQ(m_error, "pithwise: There is no file named ./nowhere.gguf.\n");
}

TEST_F(ApplicationTest, WithoutAHomeFolderThatIsOneSentence)
{
    for (const QStringList& variables : {QStringList{"-u", "HOME"}, QStringList{"HOME="}}) {
        QProcess& process =
            m_session.start("env", variables + QStringList{Program::path(), "--model", standin()});
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_EQ(process.readAllStandardError(),
                  "pithwise: There is no home folder: the variable HOME names none.\n");
    }
}

TEST_F(ApplicationTest, NoCoreDumpHoldsTheTextAndTheDesktopMayLookAtTheProcess)
{
    if (!allowCoreDumps())
        GTEST_SKIP() << "There are no core dumps here.";
    const QString folder = "/proc/" + QString::number(launch().processId());
    QFile limits(folder + "/limits");
    ASSERT_TRUE(limits.open(QIODevice::ReadOnly));
    EXPECT_THAT(limits.readAll().toStdString(), testing::ContainsRegex("Max core file size +0 "));
    EXPECT_EQ(QFileInfo(folder + "/root").ownerId(), ::geteuid());
}

TEST_F(ApplicationTest, WithoutASessionBusItRunsAllTheSame)
{
    QProcess& panel = startPanel(PITHWISE_XEMBED_PANEL, {"1200", "0"});
    m_session.start("env", {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere", Program::path(),
                            "--model", standin()});
    EXPECT_TRUE(nextLine(panel).startsWith("icon "));
    click({1210, 10});
    waitUntilShown();
}

TEST_F(ApplicationTest, ItEndsWhenItIsAskedTo)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess& process = launch();
        show();
        ::kill(static_cast<pid_t>(process.processId()), signal);
        m_session.waitForEnd(process);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.readAllStandardError(), "");
    }
}

TEST_F(ApplicationTest, ItEndsAlsoWhereItsInterfaceHangs)
{
    QProcess& process = launch();
    show();
    m_session.freezeServer();
    EXPECT_EQ(run({"toggle"}), 1) << "it is not to be had";
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    constexpr int limit = 10'000; // milliseconds, for what takes one second where others work too
    EXPECT_TRUE(process.waitForFinished(limit));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
}

// On a model that keeps the processors busy.
using LongRunApplicationTest = ApplicationTest;

TEST_F(LongRunApplicationTest, ItDoesNotEndTheLaterForARun)
{
    QProcess& process = launchOn(slowModel(slow));
    startApp({"--editor", longText()});
    m_session.xdotool({"key", "ctrl+a"});
    m_session.xdotool({"key", "ctrl+alt+s"});
    waitUntilShown(); // the run has been started by now
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    waitForEndDuringWork(process);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
}

} // namespace
