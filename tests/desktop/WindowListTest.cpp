#include "WindowList.h"

#include "DesktopSession.h"
#include "ScreenGrab.h"
#include "TestWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

namespace {

using testing::IsEmpty;

class WindowListTest : public testing::Test
{
protected:
    std::vector<WindowList::Window> windows() { return WindowList::create()->windows(); }

    std::vector<std::uint32_t> ids()
    {
        std::vector<std::uint32_t> ids;
        for (const WindowList::Window& window : windows())
            ids.push_back(window.id);
        return ids;
    }

    WindowList::Window find(std::uint32_t id)
    {
        const std::vector<WindowList::Window> all = windows();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [id](const auto& window) { return window.id == id; });
        EXPECT_NE(found, all.end());
        return found == all.end() ? WindowList::Window{} : *found;
    }

    bool isListed(std::uint32_t id)
    {
        const std::vector<std::uint32_t> all = ids();
        return std::find(all.begin(), all.end(), id) != all.end();
    }

    void waitUntilListed(std::uint32_t id, bool expected = true)
    {
        m_session.waitUntil("the window's place on the list",
                            [&] { return isListed(id) == expected; });
    }

    DesktopSession m_session;
};

TEST_F(WindowListTest, AnEmptyDesktopHasNoWindows)
{
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(ScreenGrab::frontWindowID(), std::nullopt);
}

TEST_F(WindowListTest, AnotherProgramsWindowIsListedWithItsProcessAndSize)
{
    const QProcess& program =
        m_session.start("zenity", {"--info", "--text=Hello", "--width=400", "--height=300"});
    const std::uint32_t id = m_session.waitForWindow({"--class", "^zenity$"});
    waitUntilListed(id);
    const WindowList::Window window = find(id);
    EXPECT_EQ(window.owner, program.processId());
    EXPECT_EQ(window.layer, 0);
    EXPECT_EQ(window.opacity, 1);
    const QByteArray size = m_session.xdotool({"getwindowgeometry", QString::number(id)});
    EXPECT_TRUE(
        size.contains(QString("Geometry: %1x%2\n").arg(window.width).arg(window.height).toLatin1()))
        << size.toStdString();
    EXPECT_GE(window.width, 400);
    EXPECT_EQ(ScreenGrab::frontWindowID(), id);
}

TEST_F(WindowListTest, TheFrontmostComesFirst)
{
    TestWindow first(m_session), second(m_session), third(m_session);
    for (TestWindow* window : {&first, &second, &third})
        window->show();
    m_session.xdotool({"windowraise", QString::number(third.id())});
    m_session.xdotool({"windowraise", QString::number(first.id())});
    m_session.waitUntil("the order", [&] {
        return ids() == std::vector{first.id(), third.id(), second.id()};
    });
    EXPECT_EQ(ScreenGrab::frontWindowID(), first.id()); // it covers the others
}

TEST_F(WindowListTest, MoreThan120PointsAWayAreNeeded)
{
    TestWindow narrow(m_session, {0, 0, 120, 400}), flat(m_session, {0, 0, 400, 120});
    narrow.show();
    flat.show();
    EXPECT_EQ(find(narrow.id()).width, 120);
    EXPECT_EQ(ScreenGrab::frontWindowID(), std::nullopt);
    TestWindow least(m_session, {0, 0, 121, 121});
    least.show();
    EXPECT_EQ(ScreenGrab::frontWindowID(), least.id());
}

TEST_F(WindowListTest, SizesArePointsAlsoWhereOneIsSeveralPixels)
{
    m_session.run("sh", {"-c", "echo 'Xft.dpi: 144' | xrdb -merge"});
    TestWindow small(m_session, {0, 0, 180, 180}), large(m_session, {200, 0, 183, 183});
    small.show();
    EXPECT_EQ(find(small.id()).width, 120);
    EXPECT_EQ(ScreenGrab::frontWindowID(), std::nullopt);
    large.show();
    EXPECT_EQ(find(large.id()).height, 122);
    EXPECT_EQ(ScreenGrab::frontWindowID(), large.id());
}

TEST_F(WindowListTest, AScaleThatMakesNoSenseCountsAsOne)
{
    TestWindow window(m_session, {0, 0, 300, 200});
    window.show();
    for (const char* dpi : {"", "nan", "-144", "0", "12", "much"}) {
        m_session.run("sh", {"-c", QString("echo 'Xft.dpi: %1' | xrdb -load").arg(dpi)});
        EXPECT_EQ(find(window.id()).width, 300) << dpi;
    }
    m_session.run("sh", {"-c", "echo 'Xft.dpi: 1e300' | xrdb -load"});
    EXPECT_GT(find(window.id()).width, 1);
}

TEST_F(WindowListTest, OnlyOrdinaryWindowsAreOnLayerZero)
{
    const auto layerOf = [&](std::initializer_list<const char*> types,
                             std::initializer_list<const char*> states) {
        TestWindow window(m_session);
        window.setTypes(types);
        window.setStates(states);
        window.show();
        return find(window.id()).layer;
    };
    EXPECT_EQ(layerOf({}, {}), 0);
    EXPECT_EQ(layerOf({"_NORMAL"}, {}), 0);
    EXPECT_EQ(layerOf({"_DIALOG"}, {}), 0);
    EXPECT_EQ(layerOf({"_UTILITY"}, {}), 0);
    EXPECT_EQ(layerOf({"_OF_OUR_OWN", "_NORMAL"}, {}), 0);
    EXPECT_EQ(layerOf({"_NORMAL"}, {"_FULLSCREEN"}), 0);
    for (const char* type : {"_DOCK", "_NOTIFICATION", "_SPLASH", "_TOOLBAR", "_MENU"})
        EXPECT_GT(layerOf({type}, {}), 0) << type;
    EXPECT_GT(layerOf({"_OF_OUR_OWN", "_DOCK", "_NORMAL"}, {}), 0);
    EXPECT_GT(layerOf({"_UTILITY"}, {"_ABOVE"}), 0);
    EXPECT_GT(layerOf({"_NORMAL"}, {"_ABOVE"}), 0);
    EXPECT_LT(layerOf({"_DESKTOP"}, {}), 0);
    EXPECT_LT(layerOf({"_NORMAL"}, {"_BELOW"}), 0);
}

TEST_F(WindowListTest, WhatStaysOnTopIsNeverTheFrontWindow)
{
    TestWindow ordinary(m_session, {50, 50, 300, 200});
    ordinary.show();
    TestWindow dock(m_session), notification(m_session), above(m_session), desktop(m_session);
    dock.setTypes({"_DOCK"});
    notification.setTypes({"_NOTIFICATION"});
    above.setStates({"_ABOVE"});
    desktop.setTypes({"_DESKTOP"});
    for (TestWindow* window : {&dock, &notification, &above, &desktop})
        window->show();
    EXPECT_EQ(ids().size(), 5U);
    EXPECT_NE(ids().front(), ordinary.id());
    EXPECT_EQ(ScreenGrab::frontWindowID(), ordinary.id());
}

TEST_F(WindowListTest, ATransparentWindowIsPassedOver)
{
    TestWindow behind(m_session), before(m_session);
    behind.show();
    before.show();
    m_session.xdotool({"windowraise", QString::number(before.id())});
    m_session.waitUntil("the order", [&] { return ids().front() == before.id(); });
    before.setProperty("_NET_WM_WINDOW_OPACITY", "CARDINAL", {0});
    EXPECT_EQ(find(before.id()).opacity, 0);
    EXPECT_EQ(ScreenGrab::frontWindowID(), behind.id());
    before.setProperty("_NET_WM_WINDOW_OPACITY", "CARDINAL", {0x7FFFFFFF});
    EXPECT_NEAR(find(before.id()).opacity, 0.5, 1e-6);
    EXPECT_EQ(ScreenGrab::frontWindowID(), before.id());
}

TEST_F(WindowListTest, MinimisedWindowsAreNotOnScreen)
{
    TestWindow window(m_session);
    window.show();
    EXPECT_TRUE(isListed(window.id()));
    m_session.xdotool({"windowminimize", QString::number(window.id())});
    waitUntilListed(window.id(), false);
    EXPECT_EQ(ScreenGrab::frontWindowID(), std::nullopt);
    m_session.xdotool({"windowactivate", QString::number(window.id())});
    waitUntilListed(window.id());
}

TEST_F(WindowListTest, WindowsOfOtherWorkspacesAreNotOnScreen)
{
    TestWindow window(m_session);
    window.show();
    m_session.xdotool({"set_desktop_for_window", QString::number(window.id()), "1"});
    waitUntilListed(window.id(), false);
    m_session.xdotool({"set_desktop", "1"});
    waitUntilListed(window.id());
    m_session.xdotool({"set_desktop", "0"});
    waitUntilListed(window.id(), false);
    m_session.xdotool({"set_desktop_for_window", QString::number(window.id()), "-1"}); // all
    waitUntilListed(window.id());
}

TEST_F(WindowListTest, OurOwnWindowsAreListedButNeverCaptured)
{
    TestWindow own(m_session), utility(m_session, {0, 0, 100, 400});
    own.setOwner(static_cast<std::uint32_t>(::getpid()));
    own.show();
    utility.show();
    EXPECT_EQ(find(own.id()).owner, ::getpid());
    EXPECT_EQ(ScreenGrab::frontWindowID(), std::nullopt);
}

TEST_F(WindowListTest, PropertiesOfTheWrongKindOrSizeDoNoHarm)
{
    TestWindow window(m_session);
    const std::vector<std::uint32_t> nonsense(60'000, 0xFFFFFFFF);
    window.show();
    for (const char* name : {"_NET_WM_WINDOW_TYPE", "_NET_WM_STATE", "_NET_WM_DESKTOP",
                             "_NET_WM_WINDOW_OPACITY", "_NET_WM_PID", "_GTK_FRAME_EXTENTS"})
        window.setProperty(name, "STRING", nonsense);
    const WindowList::Window found = find(window.id());
    EXPECT_EQ(found.owner, std::nullopt); // no process has this number
    EXPECT_EQ(found.opacity, 1);
    EXPECT_EQ(found.width, 300);
}

TEST(WindowListWithoutManager, ThereIsNoList)
{
    DesktopSession session({.windowManager = DesktopSession::WindowManager::none});
    TestWindow window(session);
    window.show();
    EXPECT_THAT(WindowList::create()->windows(), IsEmpty());
}

TEST(WindowListWithoutManager, AListOfWindowsThatAreNoneIsShortWork)
{
    DesktopSession session({.windowManager = DesktopSession::WindowManager::none});
    TestWindow window(session);
    window.show();
    std::vector<std::uint32_t> listed(50'000, 0x12345678);
    listed.back() = window.id();
    window.setRootProperty("_NET_CLIENT_LIST_STACKING", "WINDOW", listed);
    const std::vector<WindowList::Window> windows = WindowList::create()->windows();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows.front().id, window.id());
}

TEST(WindowListWithoutServer, TheListIsEmpty)
{
    DesktopSession session;
    const auto list = WindowList::create();
    session.killServer();
    EXPECT_THAT(list->windows(), IsEmpty());
    qputenv("DISPLAY", "nonsense");
    EXPECT_THAT(list->windows(), IsEmpty());
}

} // namespace
