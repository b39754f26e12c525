#include "ReaderFixture.h"

namespace {

/// Where the keyboard is when the popover comes. Wherever it is, Space must not end the program.
class KeyboardTest : public ReaderFixture
{
protected:
    std::string focus()
    {
        const auto node = m_reader.focus();
        return node ? node->name : "nothing";
    }

    /// Once the popover has the keyboard.
    std::string focusInFront()
    {
        waitUntilShown();
        waitUntilInFront(popover());
        m_session.waitUntil("a control with the focus",
                            [this] { return m_reader.focus().has_value(); });
        return focus();
    }
};

// On a model that keeps the processors busy.
using LongRunKeyboardTest = KeyboardTest;

TEST_F(LongRunKeyboardTest, AfterTheHotkeyTheFocusThatWasOnSummarizeIsOnStop)
{
    QProcess& process = launchToReadOn(slowModel(slow));
    show();
    enter("Some text.");
    waitUntilEnabled("Summarize");
    press({"Tab", "Tab", "Tab", "Tab", "Tab"});
    waitUntilFocused("push button", "Summarize");
    click(areaOf(startApp({"--editor", longText()})).center());
    waitUntilHidden();
    press({"ctrl+a", "ctrl+alt+s"});
    waitUntilShown();
    waitUntilInFront(popover());
    waitUntilFocused("push button", "Stop");
    press({"space"});
    waitUntilFocused("push button", "Summarize");
    EXPECT_EQ(process.state(), QProcess::Running);
}

TEST_F(KeyboardTest, AWindowThatIsReadLeavesTheFocusOnAControl)
{
    launchToRead();
    startApp({"--editor", "Pack my box with five dozen jugs."}); // nothing is selected
    press({"ctrl+alt+s"});
    const std::string first = focusInFront();
    EXPECT_THAT(first, testing::AnyOf("Stop", "Summarize", "Active Window")) << first;
    waitForSummary();
    const std::string last = focus();
    EXPECT_THAT(last, testing::AnyOf("Summarize", "Active Window")) << last;
    EXPECT_TRUE(m_reader.find("radio button", "Capture").is(ScreenReader::checked));
}

TEST_F(KeyboardTest, AfterTheFileChooserTheFocusIsOnAControl)
{
    launchToRead();
    show();
    enter("Some text.");
    choose("Document");
    pressButton("Choose File…");
    const std::uint32_t chooser = m_session.waitForWindow({"--name", "^Choose File$"});
    waitUntilInFront(chooser);
    // A run that the mouse begins meanwhile would take it from Summarize.
    m_reader.perform(m_reader.find("push button", "Summarize"), "Press");
    press({"Escape"});
    EXPECT_NE(focusInFront(), "Quit");
    waitForSummary();
    EXPECT_NE(focusInFront(), "Quit");
}

TEST_F(KeyboardTest, ReturnOnAButtonOfTheSummaryKeepsTheSummary)
{
    launchToRead();
    show();
    enter("Some text.");
    pressButton("Summarize");
    waitForSummary();
    press({"Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "Tab"});
    waitUntilFocused("push button", "Copy Markdown");
    press({"Return"});
    waitUntilTold("Markdown copied");
    EXPECT_EQ(m_clipboard.text(), "- The takeaway.");
    EXPECT_EQ(summary(), "• The takeaway.");
}

} // namespace
