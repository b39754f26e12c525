#include "ScreenGrab.h"

#include "AppError.h"
#include "RecordingScreenPermission.h"
#include "RecordingScreenshot.h"
#include "RecordingWindowList.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ScreenGrab::Kind;

constexpr Kind kinds[] = {Kind::window, Kind::screen, Kind::region};

WindowList::Window window(std::uint32_t id)
{
    return {.id = id, .layer = 0, .owner = 1, .opacity = 1, .width = 640, .height = 480};
}

/// Captures with fakes into a temporary folder of its own.
class ScreenGrabTest : public testing::Test
{
public:
    ~ScreenGrabTest() override { qunsetenv("TMPDIR"); }

protected:
    ScreenGrabTest() { qputenv("TMPDIR", QFile::encodeName(m_folder.path())); }

    std::string capture(Kind kind)
    {
        return ScreenGrab::captureText(kind,
                                       {m_windowList, m_screenshot, m_permission, m_recognize});
    }

    /// The sentence of the error that capturing ends with.
    std::string errorOf(Kind kind)
    {
        try {
            capture(kind);
        } catch (const AppError& error) {
            return error.message();
        }
        return "no AppError";
    }

    QStringList leftovers() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
    RecordingWindowList m_windowList{{window(7)}};
    RecordingScreenshot m_screenshot;
    RecordingScreenPermission m_permission;
    std::vector<std::string> m_recognized; // what was in the files
    std::function<std::string(const std::filesystem::path&)> m_recognize =
        [this](const std::filesystem::path& file) {
            std::ifstream stream(file);
            m_recognized.emplace_back(std::istreambuf_iterator<char>(stream),
                                      std::istreambuf_iterator<char>());
            EXPECT_THAT(leftovers(), IsEmpty());
            return std::string("First\nSecond");
        };
};

TEST_F(ScreenGrabTest, EachKindAsksForItsPictureAndReturnsTheTextInIt)
{
    for (const Kind kind : kinds)
        EXPECT_EQ(capture(kind), "First\nSecond");
    EXPECT_THAT(m_screenshot.calls(), ElementsAre("window 7", "screen", "region"));
    EXPECT_THAT(m_recognized, ElementsAre("picture", "picture", "picture"));
    EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(ScreenGrabTest, ThePictureIsGoneWithTheCapture)
{
    std::filesystem::path picture;
    m_recognize = [&picture](const std::filesystem::path& file) {
        EXPECT_TRUE(std::filesystem::exists(file));
        picture = file;
        return std::string();
    };
    for (const Kind kind : kinds) {
        capture(kind);
        EXPECT_FALSE(std::filesystem::exists(picture));
    }
}

TEST_F(ScreenGrabTest, ThePermissionIsRequestedOnlyWhereItIsMissing)
{
    capture(Kind::window);
    EXPECT_THAT(m_permission.calls(), ElementsAre("isGranted"));
    m_permission = RecordingScreenPermission(false);
    EXPECT_EQ(capture(Kind::screen), "First\nSecond"); // the answer does not matter
    EXPECT_EQ(capture(Kind::window), "First\nSecond");
    EXPECT_THAT(m_permission.calls(), ElementsAre("isGranted", "request", "isGranted", "request"));
}

TEST_F(ScreenGrabTest, ASelectionNeedsNoPermissionAndNoWindows)
{
    m_permission = RecordingScreenPermission(false);
    capture(Kind::region);
    EXPECT_THAT(m_permission.calls(), IsEmpty());
    EXPECT_EQ(m_windowList.requests(), 0);
}

TEST_F(ScreenGrabTest, WithoutAPictureTheKindAndThePermissionDecideWhatIsSaid)
{
    m_screenshot = RecordingScreenshot([] { return std::nullopt; });
    for (const bool isGranted : {false, true}) {
        m_permission = RecordingScreenPermission(isGranted);
        const std::string failed =
            isGranted ? "Capture failed. The screen could not be read."
                      : "Capture failed. Pithwise can read the screen only in an X11 session. "
                        "Choose one when you log in.";
        EXPECT_EQ(errorOf(Kind::window), failed);
        EXPECT_EQ(errorOf(Kind::screen), failed);
        EXPECT_EQ(errorOf(Kind::region), "Capture cancelled.");
    }
    EXPECT_THAT(m_recognized, IsEmpty());
}

TEST_F(ScreenGrabTest, WithoutAWindowNoPictureIsTaken)
{
    m_windowList = RecordingWindowList();
    EXPECT_EQ(errorOf(Kind::window), "No window found to capture.");
    EXPECT_THAT(m_screenshot.calls(), IsEmpty());
    EXPECT_THAT(m_permission.calls(), ElementsAre("isGranted"));
}

TEST_F(ScreenGrabTest, AFailedScreenshotIsPassedOnAndLeavesNoFile)
{
    m_screenshot = RecordingScreenshot(
        []() -> std::optional<FileDescriptor> { throw std::runtime_error("The memory is full."); });
    for (const Kind kind : kinds) {
        EXPECT_THROW(capture(kind), std::runtime_error);
        EXPECT_THAT(leftovers(), IsEmpty());
    }
}

TEST_F(ScreenGrabTest, AFailedRecognitionIsPassedOnAndLeavesNoFile)
{
    m_recognize = [](const std::filesystem::path&) -> std::string {
        throw AppError("Could not read the image.");
    };
    for (const Kind kind : kinds) {
        EXPECT_EQ(errorOf(kind), "Could not read the image.");
        EXPECT_THAT(leftovers(), IsEmpty());
    }
}

TEST_F(ScreenGrabTest, NoTextIsNoError)
{
    m_recognize = [](const std::filesystem::path&) { return std::string(); };
    for (const Kind kind : kinds)
        EXPECT_EQ(capture(kind), "");
}

TEST(FrontWindow, TheFirstEligibleWindowIsTaken)
{
    WindowList::Window panel = window(1);
    panel.layer = 1;
    WindowList::Window desktop = window(2);
    desktop.layer = -1;
    WindowList::Window own = window(3);
    own.owner = ::getpid();
    WindowList::Window transparent = window(4);
    transparent.opacity = 0;
    WindowList::Window narrow = window(5);
    narrow.width = 120;
    WindowList::Window flat = window(6);
    flat.height = 120;
    RecordingWindowList list(
        {panel, desktop, own, transparent, narrow, flat, window(7), window(8)});
    EXPECT_EQ(ScreenGrab::frontWindowID(list), 7U);
}

TEST(FrontWindow, TheLimitsAreExact)
{
    WindowList::Window least = window(9);
    least.width = least.height = 121;
    least.opacity = 1.0 / 0xFFFFFFFF;
    least.owner.reset();
    RecordingWindowList list({least});
    EXPECT_EQ(ScreenGrab::frontWindowID(list), 9U);
}

TEST(FrontWindow, OurOwnAndASmallWindowAreNothingToCapture)
{
    WindowList::Window own = window(1);
    own.owner = ::getpid();
    WindowList::Window utility = window(2);
    utility.width = 100;
    utility.height = 400;
    RecordingWindowList list({own, utility});
    EXPECT_EQ(ScreenGrab::frontWindowID(list), std::nullopt);
}

} // namespace
