#include "Program.h"
#include "ReaderFixture.h"

#include <QElapsedTimer>

namespace {

/// The hotkey over whatever is in front. What it does with nothing at all is in AccessibilityTest.
class HotkeyTest : public ReaderFixture
{
protected:
    /// Presses it and returns when a summary is shown.
    void pressHotkey()
    {
        press({"ctrl+alt+s"});
        waitUntilShown();
        waitUntilInFront(popover());
        waitForSummary();
    }

    /// Starts one with three words in it and returns its window when they are there.
    std::uint32_t startTerminal()
    {
        m_session.start("xterm", {"-fa", "DejaVu Sans Mono", "-fs", "16", "-e", "sh", "-c",
                                  "echo Pack my box; exec cat"});
        const std::uint32_t window = m_session.waitForWindow({"--class", "^XTerm$"});
        waitUntilInFront(window);
        m_session.waitUntil("the text in the window", [] {
            Program program;
            program.start({"read", "--capture", "window"});
            program.finish();
            return program.output() == "Pack my box\n";
        });
        return window;
    }

    bool isOpen(const std::string& tab)
    {
        return m_reader.find("radio button", tab).is(ScreenReader::checked);
    }
};

TEST_F(HotkeyTest, TheSelectedTextIsSummarized)
{
    launchToRead();
    startApp({"--editor", "Some text to select."});
    press({"ctrl+a"});
    pressHotkey();
    m_reader.find("label", "Selected text · 4 words");
    EXPECT_TRUE(isOpen("Clipboard"));
    EXPECT_EQ(source(), "Some text to select.");
}

TEST_F(HotkeyTest, AWindowWithoutASelectionIsRead)
{
    launchToRead();
    m_clipboard.put("of no use");
    startTerminal();
    pressHotkey();
    m_reader.find("label", "Active window · 3 words");
    EXPECT_TRUE(isOpen("Capture"));
    EXPECT_EQ(source(), "Pack my box");
    EXPECT_EQ(m_clipboard.text(), "of no use");
}

TEST_F(HotkeyTest, WhatIsNotSelectedInATerminalAnyMoreIsNotTaken)
{
    launchToRead();
    const QString terminal = QString::number(startTerminal());
    m_session.waitUntil("a word to be selected", [&] {
        m_session.xdotool({"mousemove", "--window", terminal, "20", "15", "click", "--repeat", "2",
                           "--delay", "20", "1"});
        return m_clipboard.read("primary", "UTF8_STRING") == "Pack";
    });
    QElapsedTimer sinceClick;
    sinceClick.start();
    m_session.waitUntil("the double click to have passed",
                        [&] { return sinceClick.hasExpired(500); });
    m_session.xdotool({"mousemove", "--window", terminal, "300", "200", "click", "1"});
    pressHotkey();
    m_reader.find("label", "Active window · 3 words");
    EXPECT_EQ(m_clipboard.read("primary", "UTF8_STRING"), "Pack"); // as ever
}

TEST_F(HotkeyTest, WithNothingInFrontTheClipboardIsSummarizedAndStays)
{
    launchToRead();
    m_clipboard.put("Some copied text.");
    pressHotkey();
    m_reader.find("label", "Clipboard · 3 words");
    EXPECT_TRUE(isOpen("Clipboard"));
    EXPECT_EQ(source(), "Some copied text.");
    EXPECT_EQ(m_clipboard.text(), "Some copied text.");
}

TEST_F(HotkeyTest, AnEmptyWindowIsNoTextSoTheClipboardIsSummarized)
{
    launchToRead();
    m_clipboard.put("Some copied text.");
    startApp({}); // a canvas that copies nothing
    pressHotkey();
    m_reader.find("label", "Clipboard · 3 words");
    EXPECT_TRUE(isOpen("Clipboard"));
}

TEST_F(HotkeyTest, WithNothingAtAllTheEarlierTextStays)
{
    launchToRead();
    show();
    enter("Some text.");
    pressButton("Summarize");
    waitForSummary();
    toggle();
    waitUntilHidden();
    press({"ctrl+alt+s"});
    waitUntilShown();
    m_reader.find("text", "Select some text first, or copy some.");
    EXPECT_EQ(source(), "Some text.");
    pressButton("Summarize");
    waitForSummary();
}

TEST_F(HotkeyTest, OverThePopoverItTakesWhatIsSelectedThere)
{
    launchToRead();
    show();
    enter("Some text to select.");
    press({"shift+Home", "ctrl+alt+s"});
    waitForSummary();
    m_reader.find("label", "Selected text · 4 words");
}

// On a model that keeps the processors busy.
using LongRunHotkeyTest = HotkeyTest;

TEST_F(LongRunHotkeyTest, ItSupersedesARunThatGoesOn)
{
    launchToReadOn(slowModel(slow));
    show();
    enter("Earlier.");
    pressButton("Summarize");
    m_reader.find("label", "Summary"); // a part of it
    choose("TL;DR");                   // which is half as long
    startApp({"--editor", "Some text to select."});
    press({"ctrl+a", "ctrl+alt+s"});
    m_reader.find("label", "Selected text · 4 words");
    pressButton("Copy Markdown"); // when the run has ended
    waitUntilTold("Markdown copied");
    EXPECT_EQ(m_clipboard.text().size(), 110);
    EXPECT_EQ(source(), "Some text to select.");
}

} // namespace
