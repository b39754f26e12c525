#include "OutsideClicks.h"
#include "SelectionFixture.h"

namespace {

/// A terminal of the kind that most desktops have, which keeps PRIMARY when nothing is selected in
/// it any more, but tells on the accessibility bus whether something is.
class VteTerminalTest : public SelectionFixture
{
protected:
    explicit VteTerminalTest(const QStringList& variables = {})
    {
        startAccessibilityBus();
        m_session.start("env",
                        variables + QStringList{"lxterminal", "--no-remote", "--title=Terminal",
                                                "--command=sh -c 'echo selected; exec cat'"});
        m_window = m_session.waitForWindow({"--class", "^Lxterminal$"});
        waitUntilInFront(m_window);
    }

    void click(int x, int y, int times)
    {
        mouse({"mousemove", "--window", QString::number(m_window), QString::number(x),
               QString::number(y), "click", "--repeat", QString::number(times), "--delay", "20",
               "1"});
    }

    /// Below a menu that is as high as the theme has it.
    void selectWord()
    {
        m_session.waitUntil("a word to be selected", [&] {
            m_line = m_line % 60 + 5;
            click(20, m_line, 2);
            return selection("primary") == "selected";
        });
    }

    std::uint32_t m_window = 0;
    int m_line = 0;
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

/// One that tells nothing, where somebody listens to the mouse as the application does.
class SilentVteTerminalTest : public VteTerminalTest
{
protected:
    SilentVteTerminalTest() : VteTerminalTest({"NO_AT_BRIDGE=1"}) {}

    const std::unique_ptr<OutsideClicks> m_clicks = OutsideClicks::create([] {});
};

TEST_F(SilentVteTerminalTest, WhatIsNotSelectedAnyMoreIsNotTaken)
{
    selectWord();
    expectGrab("selected");
    click(200, 200, 1);
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(selection("primary"), "selected"); // as ever
}

TEST_F(SilentVteTerminalTest, WhatAClickWithShiftExtendsIsTaken)
{
    selectWord();
    letClicksPass();
    drag(m_window, {2, m_line}, 18, 0);
    waitUntilSelectionIsNot("selected");
    const QByteArray dragged = selection("primary");
    expectGrab(dragged.toStdString());
    m_session.xdotool({"keydown", "shift"});
    click(60, m_line, 1);
    m_session.xdotool({"keyup", "shift"});
    waitUntilSelectionIsNot(dragged);
    expectGrab(selection("primary").toStdString());
}

} // namespace
