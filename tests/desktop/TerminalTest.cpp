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
            m_session.xdotool({"mousemove", "--window", QString::number(m_window), "12", "10",
                               "click", "--repeat", "2", "--delay", "20", "1"});
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

} // namespace
