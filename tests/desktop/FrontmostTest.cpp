#include "SelectionFixture.h"

#include <QFile>

namespace {

/// Whose selection it is that comes, and by which of the ways.
using FrontmostTest = SelectionFixture;

/// Its window manager adds a second value to what names the active window.
class FrontmostOnXfwmTest : public SelectionFixture
{
protected:
    FrontmostOnXfwmTest()
        : SelectionFixture({.windowManager = DesktopSession::WindowManager::compositing})
    {}
};

TEST_F(FrontmostOnXfwmTest, TheApplicationInFrontIsKnown)
{
    startApp({"--copies", "of the one in front"});
    expectGrab("of the one in front");
}

TEST_F(FrontmostTest, AnotherApplicationsPrimaryIsNotTaken)
{
    startApp({"--editor", "of the one behind"}, "Behind");
    selectAll("of the one behind");
    startApp({"--copies", "of the one in front"});
    expectGrab("of the one in front");
}

TEST_F(FrontmostTest, AnotherApplicationsPrimaryIsNotTakenForWantOfABetterOneEither)
{
    startApp({"--editor", "of the one behind"}, "Behind");
    selectAll("of the one behind");
    startApp({"--editor", "nothing selected"});
    EXPECT_EQ(selection("primary"), "of the one behind");
    EXPECT_EQ(grab(), std::nullopt);
}

TEST_F(FrontmostTest, AnotherApplicationsSelectionIsNotToldOverAtSpi)
{
    const QProcess& behind = startAccessibleApp({"--editor", "of the one behind"});
    selectAll("of the one behind");
    waitUntilTold(behind);
    startApp({"--copies", "of the one in front"}, "Front");
    expectGrab("of the one in front");
}

TEST_F(FrontmostTest, WhatTheApplicationTellsCountsBeforePrimary)
{
    const QProcess& application =
        startAccessibleApp({"--editor", "selected", "--primary", "primary"});
    selectAll("primary");
    waitUntilTold(application);
    expectGrab("selected");
}

TEST_F(FrontmostTest, WhatIsSelectedNowCountsAndPrimaryDoesNot)
{
    startApp({"--editor", "selected", "--primary", "from an hour ago"});
    selectAll("from an hour ago");
    expectGrabOver("earlier", "selected");
}

TEST_F(FrontmostTest, WhatIsNotSelectedAnyMoreIsNotTaken)
{
    for (const bool isAccessible : {false, true}) {
        QProcess& editor = isAccessible ? startAccessibleApp({"--editor", "no more"})
                                        : startApp({"--editor", "no more"});
        selectAll("no more");
        if (isAccessible)
            waitUntilTold(editor);
        expectGrab("no more");
        m_session.xdotool({"key", "Right"});
        EXPECT_EQ(grab(), std::nullopt);
        EXPECT_EQ(selection("primary"), "no more"); // as ever
        m_session.end(editor);
    }
}

TEST_F(FrontmostTest, OfTwoWindowsOfAProgramTheOneInFrontCounts)
{
    startAccessibilityBus();
    for (const char* name : {"behind", "front"}) {
        QFile file(m_session.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(name);
    }
    const QProcess& editor =
        m_session.start("mousepad", {"--disable-server", "--opening-mode=window",
                                     m_session.path("behind"), m_session.path("front")});
    const std::uint32_t behind = m_session.waitForWindow({"--name", "behind - Mousepad$"});
    const std::uint32_t front = m_session.waitForWindow({"--name", "front - Mousepad$"});
    m_session.xdotool({"windowactivate", QString::number(behind)});
    waitUntilInFront(behind);
    selectAll("behind");
    EXPECT_EQ(waitUntilTold(editor), "behind");
    m_session.xdotool({"windowactivate", QString::number(front)});
    waitUntilInFront(front);
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(selection("primary"), "behind");
    selectAll("front");
    expectGrab("front");
}

TEST_F(FrontmostTest, EveryProcessIsTrusted)
{
    EXPECT_TRUE(m_ports.accessibility->isTrusted());
}

} // namespace
