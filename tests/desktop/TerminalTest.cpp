#include "OutsideClicks.h"
#include "SelectionFixture.h"

#include <QCoroTask>
#include <QFile>

namespace {

/// A terminal in front with a program in it that writes what is typed into a file.
class TerminalTest : public SelectionFixture
{
protected:
    TerminalTest()
        : m_terminal(m_session.start("xterm", {"-T", "Terminal", "-e", "sh", "-c",
                                               "echo selected; exec cat > " + m_result})),
          m_window(m_session.waitForWindow({"--name", "^Terminal$"}))
    {
        waitUntilInFront(m_window);
        m_session.waitUntil("the program", [this] { return QFile::exists(m_result); });
    }

    void selectWord()
    {
        m_session.waitUntil("a word to be selected", [&] {
            mouse({"mousemove", "--window", QString::number(m_window), "12", "10", "click",
                   "--repeat", "2", "--delay", "20", "1"});
            return selection("primary") == "selected";
        });
    }

    /// What is typed after the grab comes after whatever the grab sent.
    void expectSurvival()
    {
        m_session.xdotool({"type", "alive\n"});
        m_session.waitUntil("the typed line", [&] { return QFile(m_result).size() > 0; });
        QFile file(m_result);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll().toStdString(), "alive\n");
        EXPECT_EQ(m_terminal.state(), QProcess::Running);
        // The shortcut would have ended it.
        m_session.xdotool({"key", "ctrl+c"});
        EXPECT_TRUE(m_terminal.waitForFinished());
    }

    QString m_result = m_session.path("result");
    QProcess& m_terminal;
    std::uint32_t m_window;
};

TEST_F(TerminalTest, AProgramSurvivesWithNothingSelected)
{
    putOnClipboard("earlier");
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(clipboard(), "earlier");
    expectSurvival();
}

TEST_F(TerminalTest, TheSelectionComesWithoutAKey)
{
    selectWord();
    expectGrab("selected");
    expectSurvival();
}

TEST_F(TerminalTest, ASimulatedCopyIsNotEvenTried)
{
    selectWord();
    putOnClipboard("earlier");
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::copySelection(m_ports)), std::nullopt);
    EXPECT_EQ(clipboard(), "earlier");
    expectSurvival();
}

TEST_F(TerminalTest, ATerminalThatIsFrozenIsNotWaitedFor)
{
    selectWord();
    stop(m_terminal);
    EXPECT_EQ(grab(), std::nullopt);
    resume(m_terminal);
    expectGrab("selected");
    expectSurvival();
}

/// The same, where somebody listens to the mouse as the application does.
class ClickedTerminalTest : public TerminalTest
{
protected:
    void moveTo(int x, int y)
    {
        mouse({"mousemove", "--window", QString::number(m_window), QString::number(x),
               QString::number(y)});
    }

    void click(int x, int y, int button = 1)
    {
        letClicksPass();
        moveTo(x, y);
        mouse({"click", QString::number(button)});
    }

    void expectNothing()
    {
        EXPECT_EQ(grab(), std::nullopt);
        EXPECT_EQ(selection("primary"), "selected"); // as ever
    }

    void expectSelectable()
    {
        letClicksPass();
        selectWord();
        expectGrab("selected");
    }

    std::unique_ptr<OutsideClicks> m_clicks = OutsideClicks::create([] {});
};

TEST_F(ClickedTerminalTest, WhatIsNotSelectedAnyMoreIsNotTaken)
{
    expectSelectable();
    click(200, 100);
    expectNothing();
    expectSelectable();
    expectSurvival();
}

TEST_F(ClickedTerminalTest, WhatADragOrTheRightButtonSelectsIsTaken)
{
    expectSelectable();
    letClicksPass();
    drag(m_window, {3, 10}, 24, 0);
    waitUntilSelectionIsNot("selected");
    const QByteArray dragged = selection("primary");
    expectGrab(dragged.toStdString());
    click(3, 10);
    EXPECT_EQ(grab(), std::nullopt);
    click(35, 10, 3);
    waitUntilSelectionIsNot(dragged);
    expectGrab(selection("primary").toStdString());
    expectSurvival();
}

TEST_F(ClickedTerminalTest, AClickElsewhereChangesNothing)
{
    const auto clickElsewhere = [this] {
        mouse({"mousemove", "1270", "890", "click", "1"}); // on the desktop
        moveTo(200, 2);
        mouse({"mousemove_relative", "--", "0", "-10", "click", "1"}); // on the title
        m_session.xdotool({"windowactivate", QString::number(m_window)});
        waitUntilInFront(m_window);
    };
    expectSelectable();
    clickElsewhere();
    expectGrab("selected");
    click(200, 100);
    clickElsewhere();
    expectNothing();
    expectSurvival();
}

TEST_F(ClickedTerminalTest, MovingTheWindowSelectsNothing)
{
    expectSelectable();
    click(200, 100);
    const auto place = [this] {
        return m_session.xdotool({"getwindowgeometry", QString::number(m_window)});
    };
    const QByteArray before = place();
    m_session.xdotool({"keydown", "alt"});
    drag(m_window, {100, 100}, 100, 60);
    m_session.xdotool({"keyup", "alt"});
    m_session.waitUntil("the window to move", [&] { return place() != before; });
    expectNothing();
    expectSurvival();
}

TEST_F(ClickedTerminalTest, AClickWithShiftIsOneAsAnyOther)
{
    expectSelectable();
    m_session.xdotool({"keydown", "shift"});
    click(200, 100);
    m_session.xdotool({"keyup", "shift"});
    expectNothing();
    expectSurvival();
}

TEST_F(ClickedTerminalTest, AClickCountsWhileClicksCloseNothing)
{
    m_clicks->pause();
    expectSelectable();
    click(200, 100);
    expectNothing();
    expectSurvival();
}

} // namespace
