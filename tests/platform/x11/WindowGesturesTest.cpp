#include "WindowGestures.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Kind = WindowGestures::Kind;

class WindowGesturesTest : public testing::Test
{
protected:
    static constexpr std::uint32_t window = 7;
    static constexpr std::uint32_t otherWindow = 8;
    static constexpr std::uint32_t left = 1;
    static constexpr std::uint32_t right = 3;
    static constexpr std::uint16_t shift = 1 << 0;
    static constexpr std::uint16_t numLock = 1 << 4;
    static constexpr std::uint16_t control = 1 << 2;
    static constexpr std::uint16_t alt = 1 << 3;
    static constexpr std::uint16_t super = 1 << 6;

    /// Long after what came before it.
    void press(int x, int y, std::uint16_t modifiers = 0)
    {
        m_time += 10'000;
        m_gestures.press({window, left, m_time, x, y, modifiers});
    }

    void click(int x, int y, std::uint16_t modifiers = 0)
    {
        press(x, y, modifiers);
        m_gestures.release(left, x, y);
    }

    void clickAfter(std::uint32_t milliseconds, int x, int y, std::uint32_t in = window)
    {
        m_time += milliseconds;
        m_gestures.press({in, left, m_time, x, y, 0});
        m_gestures.release(left, x, y);
    }

    void drag(std::uint16_t modifiers = 0)
    {
        press(100, 100, modifiers);
        m_gestures.release(left, 200, 100);
    }

    std::optional<Kind> last() const { return m_gestures.last(window); }

    WindowGestures m_gestures;
    std::uint32_t m_time = 0;
};

TEST_F(WindowGesturesTest, NothingIsKnownAtFirst)
{
    EXPECT_EQ(last(), std::nullopt);
    EXPECT_EQ(m_gestures.last(0), std::nullopt);
    m_gestures.release(left, 1, 1);
    EXPECT_EQ(last(), std::nullopt);
}

TEST_F(WindowGesturesTest, AClickIsOneFromThePressOnAndThoughTheHandTrembles)
{
    drag();
    press(100, 100, numLock);
    EXPECT_EQ(last(), Kind::click);
    m_gestures.release(left, 103, 97);
    EXPECT_EQ(last(), Kind::click);
}

TEST_F(WindowGesturesTest, AnythingFartherIsADrag)
{
    for (const auto& [x, y] : {std::pair(104, 100), std::pair(100, 96), std::pair(500, 900)}) {
        press(100, 100);
        m_gestures.release(left, x, y);
        EXPECT_EQ(last(), Kind::selection) << x << " " << y;
    }
}

TEST_F(WindowGesturesTest, TheSecondAndTheThirdClickAtAPlaceSelect)
{
    click(100, 100);
    clickAfter(500, 102, 99);
    EXPECT_EQ(last(), Kind::selection);
    clickAfter(400, 100, 100);
    EXPECT_EQ(last(), Kind::selection);
    clickAfter(501, 100, 100);
    EXPECT_EQ(last(), Kind::click);
}

TEST_F(WindowGesturesTest, ASecondClickElsewhereIsOneOfItsOwn)
{
    click(100, 100);
    clickAfter(200, 100, 104);
    EXPECT_EQ(last(), Kind::click);
    clickAfter(200, 100, 104, otherWindow);
    EXPECT_EQ(m_gestures.last(otherWindow), Kind::click);
}

TEST_F(WindowGesturesTest, AClickAfterADragIsNoDoubleClick)
{
    drag();
    clickAfter(100, 100, 100);
    EXPECT_EQ(last(), Kind::click);
}

TEST_F(WindowGesturesTest, ADoubleClickIsOneWhileTheTimeWrapsAround)
{
    m_time = 0xFFFFFFFF - 10'000;
    click(100, 100);
    clickAfter(100, 100, 100);
    EXPECT_EQ(last(), Kind::selection);
}

TEST_F(WindowGesturesTest, ShiftIsTold)
{
    click(100, 100, shift);
    EXPECT_EQ(last(), Kind::clickWithShift);
    drag(shift);
    EXPECT_EQ(last(), Kind::selection);
    click(100, 100, control);
    EXPECT_EQ(last(), Kind::click);
}

TEST_F(WindowGesturesTest, TheRightButtonMayHaveExtendedWhatIsSelected)
{
    click(100, 100);
    m_gestures.press({window, right, m_time + 100, 100, 100, 0});
    m_gestures.release(right, 100, 100);
    EXPECT_EQ(last(), Kind::selection);
    clickAfter(200, 100, 100);
    EXPECT_EQ(last(), Kind::click);
}

TEST_F(WindowGesturesTest, OtherButtonsAreNoGestures)
{
    for (const std::uint32_t button : {2u, 4u, 5u, 6u, 7u, 8u, 9u}) {
        m_gestures.press({window, button, m_time, 100, 100, 0});
        m_gestures.release(button, 300, 300);
    }
    EXPECT_EQ(last(), std::nullopt);
    press(100, 100);
    m_gestures.press({window, 5, m_time, 150, 150, 0}); // the wheel, during a drag
    m_gestures.release(5, 150, 150);
    m_gestures.release(left, 300, 300);
    EXPECT_EQ(last(), Kind::selection);
}

TEST_F(WindowGesturesTest, MovingTheWindowIsNoGestureInIt)
{
    click(100, 100);
    for (const std::uint16_t key : {alt, super}) {
        drag(key);
        EXPECT_EQ(last(), Kind::click);
        m_gestures.press({window, right, m_time, 100, 100, key});
        m_gestures.release(right, 300, 300);
        EXPECT_EQ(last(), Kind::click);
    }
    drag(control | alt); // selects a block, in some terminals
    EXPECT_EQ(last(), Kind::selection);
}

TEST_F(WindowGesturesTest, EachWindowHasItsOwn)
{
    drag();
    clickAfter(10'000, 100, 100, otherWindow);
    clickAfter(10'000, 900, 900, 0); // the desktop
    EXPECT_EQ(last(), Kind::selection);
    EXPECT_EQ(m_gestures.last(otherWindow), Kind::click);
}

TEST_F(WindowGesturesTest, ADragIsOfTheWindowThatItBeganIn)
{
    clickAfter(10'000, 100, 100, otherWindow);
    press(100, 100);
    m_gestures.release(left, 300, 300);
    EXPECT_EQ(last(), Kind::selection);
    EXPECT_EQ(m_gestures.last(otherWindow), Kind::click);
}

TEST_F(WindowGesturesTest, NothingIsKnownAnyMoreOnceItIsForgotten)
{
    click(100, 100);
    press(100, 100);
    m_gestures.forget();
    EXPECT_EQ(last(), std::nullopt);
    m_gestures.release(left, 300, 300);
    EXPECT_EQ(last(), std::nullopt);
}

TEST_F(WindowGesturesTest, TheLatestWindowsAreKnown)
{
    constexpr auto most = static_cast<std::uint32_t>(WindowGestures::mostWindows);
    const std::uint32_t first = 1000;
    for (std::uint32_t i = 0; i < most; ++i)
        clickAfter(10'000, 100, 100, first + i);
    clickAfter(10'000, 100, 100, first); // is no longer the oldest
    clickAfter(10'000, 100, 100);
    EXPECT_EQ(last(), Kind::click);
    EXPECT_EQ(m_gestures.last(first), Kind::click);
    EXPECT_EQ(m_gestures.last(first + 1), std::nullopt);
    EXPECT_EQ(m_gestures.last(first + 2), Kind::click);
}

} // namespace
