#include "SelectionFixture.h"

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

TEST_F(FrontmostTest, PrimaryCountsBeforeACopy)
{
    startApp({"--editor", "selected", "--primary", "primary"});
    selectAll("primary");
    expectGrabWithoutCopy("primary");
}

TEST_F(FrontmostTest, ABlankPrimaryIsNoneAndTheApplicationIsMadeToCopy)
{
    startApp({"--editor", "selected", "--primary", " "});
    selectAll(" ");
    expectGrab("selected");
}

TEST_F(FrontmostTest, EveryProcessIsTrusted)
{
    EXPECT_TRUE(m_ports.accessibility->isTrusted());
}

} // namespace
