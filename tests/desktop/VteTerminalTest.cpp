#include "SelectionFixture.h"

namespace {

/// A terminal of the kind that most desktops have, which keeps PRIMARY when nothing is selected in
/// it any more, but tells on the accessibility bus whether something is.
class VteTerminalTest : public SelectionFixture
{
protected:
    VteTerminalTest()
    {
        startAccessibilityBus();
        m_session.start("lxterminal", {"--no-remote", "--title=Terminal",
                                       "--command=sh -c 'echo selected; exec cat'"});
        m_window = m_session.waitForWindow({"--class", "^Lxterminal$"});
        waitUntilInFront(m_window);
    }

    void click(int x, int y, int times)
    {
        m_session.xdotool({"mousemove", "--window", QString::number(m_window), QString::number(x),
                           QString::number(y), "click", "--repeat", QString::number(times),
                           "--delay", "20", "1"});
    }

    /// Below a menu that is as high as the theme has it.
    void selectWord()
    {
        int y = 0;
        m_session.waitUntil("a word to be selected", [&] {
            y = y % 60 + 5;
            click(20, y, 2);
            return selection("primary") == "selected";
        });
    }

    std::uint32_t m_window = 0;
};

TEST_F(VteTerminalTest, TheSelectionComesWithoutAKey)
{
    selectWord();
    expectGrabWithoutCopy("selected");
}

TEST_F(VteTerminalTest, WhatIsNotSelectedAnyMoreIsNotTaken)
{
    selectWord();
    expectGrab("selected");
    click(200, 200, 1);
    m_session.waitUntil("nothing to be selected", [this] { return grab() == std::nullopt; });
    EXPECT_EQ(selection("primary"), "selected"); // as ever
}

} // namespace
