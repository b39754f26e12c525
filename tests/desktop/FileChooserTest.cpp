#include "ReaderFixture.h"

#include <QFile>

#include <signal.h>

namespace {

class FileChooserTest : public ReaderFixture
{
protected:
    /// Opens the popover and the chooser with the keyboard only.
    QProcess& launchWithChooser()
    {
        QProcess& process = launchToRead();
        show();
        m_popover = popover();
        waitUntilFocused("text", "Text to summarize");
        press({"shift+Tab", "Right", "Tab"});
        waitUntilFocused("push button", "Choose File…");
        press({"space"});
        m_chooser = m_session.waitForWindow({"--name", "^Choose File$"});
        waitUntilInFront(m_chooser);
        return process;
    }

    bool isViewable(std::uint32_t window)
    {
        QProcess question;
        question.setProcessEnvironment(m_session.environment());
        question.start("xwininfo", {"-id", QString::number(window)});
        question.waitForFinished();
        return question.readAllStandardOutput().contains("Map State: IsViewable");
    }

    void waitUntilGone(std::uint32_t window)
    {
        m_session.waitUntil("a window to go", [&] { return !isViewable(window); });
    }

    /// In a quiet moment: what the mouse has told the application by now.
    void expectBothShown()
    {
        ASSERT_TRUE(isAnswering());
        ASSERT_TRUE(isAnswering());
        EXPECT_TRUE(isViewable(m_popover));
        EXPECT_TRUE(isViewable(m_chooser));
    }

    /// Whether what is chosen now is summarised.
    void expectToLoad()
    {
        QFile file(m_session.path("notes.txt"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("Three short words.");
        file.close();
        waitUntilFocused("text", "File name:");
        type(file.fileName());
        // On a busy machine the chooser completes what it has of the name until then.
        m_session.waitUntil("the name", [&] {
            return m_reader.text(m_reader.find("text", "File name:")) ==
                   file.fileName().toStdString();
        });
        press({"Return"});
        m_reader.find("label", "notes.txt · 3 words");
        waitForSummary();
    }

    std::uint32_t m_popover = 0;
    std::uint32_t m_chooser = 0;
};

TEST_F(FileChooserTest, ItLiesOverThePopover)
{
    launchWithChooser();
    const QByteArray stack = m_session.property(0, "_NET_CLIENT_LIST_STACKING");
    const auto place = [&stack](std::uint32_t window) {
        return stack.indexOf("0x" + QByteArray::number(window, 16));
    };
    EXPECT_GE(place(m_popover), 0);
    EXPECT_GT(place(m_chooser), place(m_popover));
}

TEST_F(FileChooserTest, APathThatIsTypedIsLoaded)
{
    launchWithChooser();
    expectToLoad();
    EXPECT_FALSE(isViewable(m_chooser));
    waitUntilInFront(m_popover);
}

TEST_F(FileChooserTest, AClickInItDoesNotCloseThePopover)
{
    launchWithChooser();
    const QRect area = areaOf(m_chooser);
    ASSERT_LT(area.left() + 50, areaOf(m_popover).left()); // not only over the popover
    for (const int button : {1, 3})
        click(area.bottomLeft() + QPoint(8, -8), button);
    expectBothShown();
}

TEST_F(FileChooserTest, AClickInAnotherApplicationClosesNothing)
{
    launchWithChooser();
    click({300, 800});
    expectBothShown();
    click(areaOf(startApp({"--editor", "text"})).center());
    expectBothShown();
}

TEST_F(FileChooserTest, EscapeReturnsToThePopover)
{
    launchWithChooser();
    press({"Escape"});
    waitUntilGone(m_chooser);
    waitUntilInFront(m_popover);
    waitUntilFocused("push button", "Choose File…");
    click({300, 800});
    waitUntilGone(m_popover);
}

TEST_F(FileChooserTest, ItGoesAndComesBackWithThePopover)
{
    launchWithChooser();
    for (int i = 0; i < 2; ++i) {
        toggle();
        waitUntilGone(m_chooser);
        waitUntilGone(m_popover);
        toggle();
        m_session.waitUntil("the chooser", [this] { return isViewable(m_chooser); });
        waitUntilInFront(m_chooser);
        expectBothShown();
    }
    expectToLoad();
}

TEST_F(FileChooserTest, ItEndsWithTheApplication)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess& process = launchWithChooser();
        ::kill(static_cast<pid_t>(process.processId()), signal);
        m_session.waitForEnd(process);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(complaints(process), "");
    }
}

} // namespace
