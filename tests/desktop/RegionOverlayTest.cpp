#include "AppError.h"
#include "OverlayFixture.h"
#include "ScreenGrab.h"
#include "ScreenPicture.h"
#include "Screenshot.h"
#include "SizeLabel.h"
#include "TestWindow.h"

#include <QGuiApplication>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>

namespace {

using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr QRgb red = 0xFFFF0000;
constexpr QRgb blue = 0xFF0000FF;

/// Selects through the port.
class RegionOverlayTest : public OverlayTest
{
public:
    // A test that failed may have left the overlay.
    ~RegionOverlayTest() override { m_screenshot->cancelRegion(); }

protected:
    using OverlayTest::OverlayTest;

    /// Starts a selection and returns once the user could drag.
    void start()
    {
        m_result = std::async(std::launch::async, [this] { return m_screenshot->takeRegion(); });
        waitForOverlay();
    }

    bool isChosen()
    {
        m_file = m_result.get();
        return m_file.has_value();
    }

    QImage picture() const { return ScreenPicture::of(m_file); }

    std::unique_ptr<Screenshot> m_screenshot = Screenshot::create();
    std::future<std::optional<FileDescriptor>> m_result;
    std::optional<FileDescriptor> m_file;
};

class TwoMonitorsTest : public RegionOverlayTest
{
protected:
    TwoMonitorsTest() : RegionOverlayTest({.monitors = {{0, 0, 640, 900}, {640, 0, 640, 900}}}) {}
};

TEST_F(TwoMonitorsTest, ADragOverBothGivesWhatWasThereBefore)
{
    TestWindow left(m_session, {500, 100, 140, 300}, red);
    TestWindow right(m_session, {640, 100, 160, 300}, blue);
    for (TestWindow* window : {&left, &right}) {
        window->setTypes({"_DOCK"});
        window->show();
    }
    m_session.waitUntil("the colours", [&] {
        const QImage image = screen();
        return image.pixel(600, 200) == red && image.pixel(700, 200) == blue;
    });
    start();
    drag({540, 150}, {740, 250});
    m_session.xdotool({"mouseup", "1"});
    ASSERT_TRUE(isChosen());
    const QImage image = picture();
    EXPECT_EQ(image.size(), QSize(200, 100));
    for (const int y : {0, 50, 99}) {
        EXPECT_EQ(image.pixel(0, y), red);
        EXPECT_EQ(image.pixel(99, y), red);
        EXPECT_EQ(image.pixel(100, y), blue);
        EXPECT_EQ(image.pixel(199, y), blue);
    }
    EXPECT_FALSE(isDimmed());
}

TEST_F(RegionOverlayTest, ADragMayGoUpwardsAndToTheLeft)
{
    start();
    drag({400, 300}, {250, 100});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
    EXPECT_EQ(picture().size(), QSize(150, 200));
}

TEST_F(RegionOverlayTest, ADragToTheCornerEndsAtTheScreensEdge)
{
    start();
    drag({1000, 800}, {5000, 5000});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
    EXPECT_EQ(picture().size(), QSize(279, 99)); // up to the last pixel the pointer can be on
}

TEST_F(RegionOverlayTest, EscapeCancelsBeforeTheDrag)
{
    start();
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_FALSE(isDimmed());
}

TEST_F(RegionOverlayTest, EscapeCancelsDuringTheDrag)
{
    start();
    drag({100, 100}, {300, 200});
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
    m_session.xdotool({"mouseup", "1"});
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(RegionOverlayTest, TheRightButtonCancelsBeforeAndDuringTheDrag)
{
    start();
    m_session.xdotool({"click", "3"});
    EXPECT_FALSE(isChosen());
    start();
    drag({100, 100}, {300, 200});
    m_session.xdotool({"click", "3"});
    EXPECT_FALSE(isChosen());
    m_session.xdotool({"mouseup", "1"});
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(RegionOverlayTest, ACancelledSelectionSaysSoAndLeavesNoFile)
{
    auto result = std::async(std::launch::async,
                             [] { return ScreenGrab::captureText(ScreenGrab::Kind::region); });
    waitForOverlay();
    m_session.xdotool({"key", "Escape"});
    EXPECT_THAT([&] { result.get(); }, ThrowsMessage<AppError>("Capture cancelled."));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(RegionOverlayTest, OtherKeysAndAClickChangeNothing)
{
    start();
    m_session.xdotool({"key", "Return"});
    moveTo(200, 200);
    m_session.xdotool({"click", "1"});
    m_session.xdotool({"click", "2"});
    EXPECT_TRUE(isDimmed());
    drag({100, 100}, {300, 200});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
    EXPECT_EQ(picture().size(), QSize(200, 100));
}

TEST_F(RegionOverlayTest, TheRectangleIsBrightAndBearsItsSize)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // it is for the fonts alone
    int argumentCount = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(argumentCount, arguments);
    start();
    drag({1190, 0}, {1240, 50});
    const QImage label = SizeLabel::render({50, 50}, 1);
    ASSERT_FALSE(label.isNull());
    m_session.waitUntil("the label", [&] {
        return screen().copy(QRect(QPoint(1240 - 12 - label.width() + 1, 62), label.size())) ==
               label;
    });
    const QImage image = screen();
    EXPECT_EQ(qGray(image.pixel(1220, 25)), grey); // inside, as it was
    EXPECT_EQ(image.pixel(1240, 25), 0xFFFFFFFF);  // the border
    EXPECT_LT(qGray(image.pixel(1245, 25)), 120);  // outside, dimmed
    moveTo(1230, 40);
    const QImage smaller = SizeLabel::render({40, 40}, 1);
    m_session.waitUntil("the new label", [&] {
        return screen().copy(QRect(QPoint(1230 + 12, 52), smaller.size())) == smaller ||
               screen().copy(QRect(QPoint(1230 - 12 - smaller.width() + 1, 52), smaller.size())) ==
                   smaller;
    });
    EXPECT_LT(qGray(screen().pixel(1235, 45)), 120); // dimmed again
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
}

TEST_F(RegionOverlayTest, AtAFractionalScaleThePictureKeepsEveryPixel)
{
    m_session.run("sh", {"-c", "echo 'Xft.dpi: 144' | xrdb -merge"});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argumentCount = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(argumentCount, arguments);
    start();
    drag({101, 101}, {401, 251});
    const QImage label = SizeLabel::render({200, 100}, 1.5); // in points
    m_session.waitUntil("the label", [&] {
        return screen().copy(QRect(QPoint(401 + 18, 251 + 18), label.size())) == label;
    });
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
    EXPECT_EQ(picture().size(), QSize(300, 150));
}

TEST_F(RegionOverlayTest, TheFocusStaysWhereItWas)
{
    m_session.start("zenity", {"--entry", "--text=Name"});
    const std::uint32_t window = m_session.waitForWindow({"--class", "^zenity$"});
    m_session.xdotool({"windowactivate", QString::number(window)});
    m_session.waitUntil("the focus", [&] { return focused().toUInt() == window; });
    start();
    EXPECT_EQ(focused().toUInt(), window);
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
    EXPECT_EQ(focused().toUInt(), window);
    start();
    drag({100, 100}, {300, 200});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
    EXPECT_EQ(focused().toUInt(), window);
}

TEST_F(RegionOverlayTest, ThereIsOneAtATime)
{
    start();
    EXPECT_FALSE(Screenshot::create()->takeRegion());
    drag({100, 100}, {300, 200});
    m_session.xdotool({"mouseup", "1"});
    EXPECT_TRUE(isChosen());
}

TEST_F(RegionOverlayTest, TheProgramCanCancelToo)
{
    start();
    m_screenshot->cancelRegion();
    EXPECT_FALSE(isChosen());
    m_screenshot->cancelRegion();
    EXPECT_FALSE(m_screenshot->takeRegion()); // at once
    start();                                  // the wish counted once
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
}

TEST_F(RegionOverlayTest, WhereAnotherProgramHoldsTheKeyboardNothingIsShown)
{
    {
        TestWindow other(m_session);
        other.grabKeyboard();
        EXPECT_FALSE(m_screenshot->takeRegion());
        EXPECT_FALSE(isDimmed());
    }
    start(); // once it lets go
    m_session.xdotool({"key", "Escape"});
    EXPECT_FALSE(isChosen());
}

TEST_F(RegionOverlayTest, TheServersDeathCancels)
{
    start();
    m_session.killServer();
    EXPECT_FALSE(isChosen());
    EXPECT_THAT(files(), IsEmpty());
}

} // namespace
