#include "Screenshot.h"

#include "AppError.h"
#include "DesktopSession.h"
#include "ScreenGrab.h"
#include "ScreenPermission.h"
#include "ScreenPicture.h"
#include "TestWindow.h"
#include "WindowList.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QScopeGuard>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <future>
#include <stdexcept>

namespace {

using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr QRgb red = 0xFFFF0000;
constexpr QRgb green = 0xFF00FF00;
constexpr QRgb blue = 0xFF0000FF;

class ScreenshotTest : public testing::Test
{
public:
    ~ScreenshotTest() override { qunsetenv("TMPDIR"); }

protected:
    explicit ScreenshotTest(const DesktopSession::Options& options = {}) : m_session(options)
    {
        QDir().mkpath(m_session.path("pictures"));
        qputenv("TMPDIR", QFile::encodeName(m_session.path("pictures")));
    }

    QStringList files() const
    {
        return QDir(m_session.path("pictures")).entryList(QDir::Files | QDir::Hidden);
    }

    /// Of the `take` before.
    QImage picture() const { return ScreenPicture::of(m_file); }

    bool takeWindow(std::uint32_t id)
    {
        m_file = Screenshot::create()->takeWindow(id);
        return m_file.has_value();
    }
    bool takeScreen()
    {
        m_file = Screenshot::create()->takeScreen();
        return m_file.has_value();
    }

    /// Until the server has drawn `colour` at a place on the screen.
    void waitForColour(QPoint place, QRgb colour)
    {
        m_session.waitUntil("the colour", [&] {
            EXPECT_TRUE(takeScreen());
            return picture().pixel(place) == colour;
        });
    }

    DesktopSession m_session;
    std::optional<FileDescriptor> m_file;
};

TEST_F(ScreenshotTest, TheScreenIsWhatAllMonitorsShow)
{
    TestWindow left(m_session, {100, 100, 300, 200}, red);
    TestWindow right(m_session, {700, 100, 300, 200}, blue);
    left.show();
    right.show();
    waitForColour({250, 250}, red);
    waitForColour({850, 250}, blue);
    ASSERT_TRUE(takeScreen());
    EXPECT_EQ(picture().size(), QSize(1280, 900));
}

TEST_F(ScreenshotTest, ThePictureHasNoNameInAnyFolder)
{
    ASSERT_TRUE(takeScreen());
    struct stat status = {};
    ASSERT_EQ(::fstat(m_file->value(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(status.st_nlink, 0U);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, WhileThePictureIsRecognisedNothingIsInAnyFolder)
{
    const auto windowList = WindowList::create();
    const auto screenshot = Screenshot::create();
    const auto permission = ScreenPermission::create();
    QSize seen;
    const auto recognize = [&](const std::filesystem::path& file) {
        EXPECT_THAT(files(), IsEmpty());
        seen = QImage(QString::fromStdString(file.string()), "png").size();
        return std::string();
    };
    ScreenGrab::captureText(ScreenGrab::Kind::screen,
                            {*windowList, *screenshot, *permission, recognize});
    EXPECT_EQ(seen, QSize(1280, 900));
}

TEST_F(ScreenshotTest, AWindowIsTakenWithoutItsFrame)
{
    TestWindow window(m_session, {100, 100, 300, 200}, green);
    window.show();
    waitForColour({250, 250}, green);
    ASSERT_TRUE(takeWindow(window.id()));
    const QImage image = picture();
    EXPECT_EQ(image.size(), QSize(300, 200));
    QImage expected(300, 200, QImage::Format_RGB32);
    expected.fill(green);
    EXPECT_EQ(image.convertToFormat(QImage::Format_RGB32), expected);
}

TEST_F(ScreenshotTest, AWindowIsTakenWithoutItsShadow)
{
    TestWindow window(m_session, {100, 100, 300, 200}, green);
    window.setProperty("_GTK_FRAME_EXTENTS", "CARDINAL", {10, 20, 30, 40}); // left, right, top
    window.show();
    ASSERT_TRUE(takeWindow(window.id()));
    EXPECT_EQ(picture().size(), QSize(270, 130));
}

TEST_F(ScreenshotTest, OfAWindowBeyondTheEdgeThePartOnScreenIsTaken)
{
    TestWindow window(m_session, {100, 100, 300, 200}, green);
    window.show();
    m_session.xdotool({"windowmove", QString::number(window.id()), "1180", "400"});
    waitForColour({1250, 500}, green);
    ASSERT_TRUE(takeWindow(window.id()));
    const QImage image = picture();
    EXPECT_LT(image.width(), 150);
    EXPECT_EQ(image.height(), 200);
    EXPECT_EQ(image.pixel(0, 0), green);
}

TEST_F(ScreenshotTest, AWindowThatIsGoneGivesNoPicture)
{
    std::uint32_t id = 0;
    {
        TestWindow window(m_session);
        window.show();
        id = window.id();
    }
    m_session.waitUntil("the window is gone", [&] {
        return !m_session.property(0, "_NET_CLIENT_LIST_STACKING")
                    .contains(QByteArray::number(id, 16));
    });
    EXPECT_FALSE(takeWindow(id));
    EXPECT_FALSE(takeWindow(0));
    EXPECT_FALSE(takeWindow(0xFFFFFFFF));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, NoFolderIsNeeded)
{
    qputenv("TMPDIR", "/proc"); // not even root can make a file there
    EXPECT_EQ(ScreenGrab::captureText(ScreenGrab::Kind::screen), "");
}

TEST_F(ScreenshotTest, APictureThatIsTooLargeLeavesNoFile)
{
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit little = {100, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &little);
    const auto restore = qScopeGuard([&before] { ::setrlimit(RLIMIT_FSIZE, &before); });
    EXPECT_THAT([&] { takeScreen(); }, ThrowsMessage<std::runtime_error>(
                                           "The screenshot could not be written: File too large."));
    EXPECT_THROW(ScreenGrab::captureText(ScreenGrab::Kind::screen), std::runtime_error);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, AnEmptyDesktopHasNoText)
{
    EXPECT_EQ(ScreenGrab::captureText(ScreenGrab::Kind::screen), "");
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, CapturesAtOnceDoNotDisturbEachOther)
{
    std::vector<std::future<std::string>> captures(4);
    for (auto& capture : captures)
        capture = std::async(std::launch::async,
                             [] { return ScreenGrab::captureText(ScreenGrab::Kind::screen); });
    for (auto& capture : captures)
        EXPECT_EQ(capture.get(), "");
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, OnlyASmallWindowIsNothingToCapture)
{
    TestWindow own(m_session), utility(m_session, {0, 0, 100, 400});
    own.setOwner(static_cast<std::uint32_t>(::getpid()));
    own.show();
    utility.show();
    EXPECT_THAT([] { ScreenGrab::captureText(ScreenGrab::Kind::window); },
                ThrowsMessage<AppError>("No window found to capture."));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, ADeadServerIsARefusal)
{
    const auto screenshot = Screenshot::create();
    m_session.killServer();
    EXPECT_FALSE(screenshot->takeScreen());
    EXPECT_FALSE(screenshot->takeWindow(7));
    EXPECT_FALSE(screenshot->takeRegion());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ScreenshotTest, XServersNeedNoPermission)
{
    EXPECT_TRUE(ScreenPermission::create()->isGranted());
    EXPECT_TRUE(ScreenPermission::create()->request());
}

class ComposedScreenshotTest : public ScreenshotTest
{
protected:
    ComposedScreenshotTest()
        : ScreenshotTest({.windowManager = DesktopSession::WindowManager::compositing})
    {}
};

TEST_F(ComposedScreenshotTest, ACoveredWindowIsTakenWhole)
{
    TestWindow below(m_session, {100, 100, 300, 200}, green);
    TestWindow above(m_session, {100, 100, 300, 200}, blue);
    below.show();
    waitForColour({250, 250}, green);
    above.show();
    m_session.xdotool({"windowraise", QString::number(above.id())});
    waitForColour({250, 250}, blue);
    ASSERT_TRUE(takeWindow(below.id()));
    QImage expected(300, 200, QImage::Format_RGB32);
    expected.fill(green);
    EXPECT_EQ(picture().convertToFormat(QImage::Format_RGB32), expected);
}

TEST_F(ComposedScreenshotTest, AWindowBeyondTheEdgeIsTakenWhole)
{
    TestWindow window(m_session, {100, 100, 300, 200}, green);
    window.show();
    m_session.xdotool({"windowmove", QString::number(window.id()), "1180", "400"});
    waitForColour({1250, 500}, green);
    ASSERT_TRUE(takeWindow(window.id()));
    EXPECT_EQ(picture().size(), QSize(300, 200));
}

} // namespace
