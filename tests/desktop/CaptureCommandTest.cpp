#include "FileDescriptor.h"
#include "OverlayFixture.h"
#include "Program.h"
#include "TestWindow.h"

#include <QFile>

#include <gmock/gmock.h>
#include <sys/inotify.h>

#include <array>
#include <cerrno>
#include <tuple>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CaptureCommandTest : public OverlayTest
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
    };

    static Result finish(Program& program)
    {
        const int status = program.finish();
        return {status, program.output().toStdString(), program.error().toStdString()};
    }

    static Result plan(const QStringList& arguments)
    {
        Program program;
        program.start(QStringList("plan") + arguments);
        return finish(program);
    }
};

TEST_F(CaptureCommandTest, TheFrontWindowIsRead)
{
    m_session.start("xterm", {"-fa", "DejaVu Sans Mono", "-fs", "16", "-e", "sh", "-c",
                              "echo Pack my box with five dozen liquor jugs; exec cat"});
    m_session.waitForWindow({"--class", "^XTerm$"});
    m_session.waitUntil("the text in the window", [] {
        const Result result = plan({"--capture", "window"});
        return result.status == 0 &&
               result.output.find("five dozen liquor jugs") != std::string::npos;
    });
    EXPECT_THAT(plan({"--capture", "screen"}).output, HasSubstr("five dozen liquor jugs"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CaptureCommandTest, TheTextOfTheWindowIsPrinted)
{
    m_session.start("xterm", {"-fa", "DejaVu Sans Mono", "-fs", "16", "-e", "sh", "-c",
                              "echo Pack my box; exec cat"});
    m_session.waitForWindow({"--class", "^XTerm$"});
    m_session.waitUntil("the text in the window", [] {
        Program program;
        program.start({"read", "--capture", "window"});
        return finish(program).output == "Pack my box\n";
    });
}

TEST_F(CaptureCommandTest, NothingIsEverInTheTemporaryFolder)
{
    const FileDescriptor events(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    const QByteArray folder = QFile::encodeName(m_session.path("pictures"));
    ASSERT_GE(::inotify_add_watch(events.value(), folder.constData(), IN_CREATE | IN_MOVED_TO), 0);
    TestWindow window(m_session, {100, 100, 300, 200});
    window.show();
    for (const char* kind : {"window", "screen"})
        EXPECT_THAT(plan({"--capture", kind}).error, Not(HasSubstr("Capture failed")));
    std::array<char, 4096> buffer{};
    EXPECT_EQ(::read(events.value(), buffer.data(), buffer.size()), -1) << "a file was made";
    EXPECT_EQ(errno, EAGAIN);
}

TEST_F(CaptureCommandTest, WithoutAWindowThatIsSaid)
{
    const Result result = plan({"--capture", "window"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "pithwise: No window found to capture.\n");
}

TEST_F(CaptureCommandTest, AnEmptyDesktopHasNoText)
{
    const Result result = plan({"--capture", "screen"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "pithwise: No text found in Screen.\n");
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CaptureCommandTest, TheUserSelectsOrCancels)
{
    for (const bool isCancelled : {true, false}) {
        Program program;
        program.start({"summarize", "--capture", "selection"});
        waitForOverlay();
        drag({100, 100}, {300, 200});
        m_session.xdotool(isCancelled ? QStringList{"key", "Escape"} : QStringList{"mouseup", "1"});
        const Result result = finish(program);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, isCancelled ? "pithwise: Capture cancelled.\n"
                                            : "pithwise: No text found in Selected area.\n");
        EXPECT_THAT(files(), IsEmpty());
        m_session.xdotool({"mouseup", "1"});
    }
}

TEST_F(CaptureCommandTest, AnInterruptTakesTheOverlayAway)
{
    Program program;
    program.start({"plan", "--capture", "selection"});
    waitForOverlay();
    program.interrupt();
    const Result result = finish(program);
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_FALSE(isDimmed());
}

TEST_F(CaptureCommandTest, TheDisplaysEndIsACancel)
{
    Program program;
    program.start({"plan", "--capture", "selection"});
    waitForOverlay();
    m_session.killServer();
    const Result result = finish(program);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "pithwise: Capture cancelled.\n");
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CaptureCommandTest, ASecondProgramsSelectionIsCancelledAndTheFirstGoesOn)
{
    Program program;
    program.start({"plan", "--capture", "selection"});
    waitForOverlay();
    EXPECT_EQ(plan({"--capture", "selection"}).error, "pithwise: Capture cancelled.\n");
    EXPECT_TRUE(isDimmed());
    drag({100, 100}, {300, 200});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_EQ(finish(program).error, "pithwise: No text found in Selected area.\n");
}

TEST_F(CaptureCommandTest, WhereThereIsNoWayEveryCaptureEndsAtOnce)
{
    const auto errorOf = [](const QString& kind, const QString& display, const QString& wayland) {
        Program program;
        program.setEnvironment("DISPLAY", display);
        program.setEnvironment("WAYLAND_DISPLAY", wayland);
        program.start({"plan", "--capture", kind});
        const Result result = finish(program);
        EXPECT_EQ(result.status, 1);
        return result.error;
    };
    const QString display = m_session.display();
    const std::string refused = "Capture failed. Pithwise can read the screen only in an X11 "
                                "session. Choose one when you log in.";
    const std::string failed = "Capture failed. The screen could not be read.";
    for (const auto& [x11, wayland, sentence] : {std::tuple{display, QString("wayland-0"), refused},
                                                 {QString(), QString(), refused},
                                                 {":9999", QString(), failed}}) {
        EXPECT_EQ(errorOf("window", x11, wayland), "pithwise: No window found to capture.\n");
        EXPECT_EQ(errorOf("screen", x11, wayland), "pithwise: " + sentence + "\n");
        EXPECT_EQ(errorOf("selection", x11, wayland), "pithwise: Capture cancelled.\n");
    }
}

TEST_F(CaptureCommandTest, ACaptureAndAFileExcludeEachOther)
{
    for (const QStringList& arguments :
         {QStringList{"--capture", "screen", "-"}, {"--capture", "Screen"}, {"--capture"}, {}}) {
        const Result result = plan(arguments);
        EXPECT_EQ(result.status, 2) << arguments.join(' ').toStdString();
        EXPECT_THAT(result.error, HasSubstr("\nUsage: pithwise plan"));
    }
}

} // namespace
