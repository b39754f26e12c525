#include "LoopbackServer.h"
#include "Program.h"
#include "ReaderFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// Every way for a text into the application but files, which have tests of their own.
class SourcesTest : public ReaderFixture
{
protected:
    SourcesTest() = default;
    explicit SourcesTest(const DesktopSession::Options& options) : ReaderFixture(options) {}

    /// Sets the page that the server answers with, and returns its address.
    QString page(const LoopbackServer::Answer& answer)
    {
        m_server.setAnswer("/page", answer);
        return m_server.url("/page").toString();
    }

    QString pageWith(const QByteArray& text)
    {
        return page({.headers = {{"Content-Type", "text/html"}},
                     .body = "<html><title>News</title>\n<p>" + text + "</p></html>"});
    }

    /// Opens the tab and types the address.
    void enterAddress(const QString& address)
    {
        choose("Web");
        const ScreenReader::Node field = m_reader.find("text", "Web address");
        m_reader.perform(field, "SetFocus");
        waitUntilFocused("text", "Web address");
        type(address);
        m_session.waitUntil("the address",
                            [&] { return m_reader.text(field) == address.toStdString(); });
    }

    void expectError(const std::string& sentence)
    {
        m_reader.find("text", sentence);
        EXPECT_FALSE(m_reader.lookFor("push button", "Stop"));
    }

    /// Starts a terminal, right where the popover opens, and returns when its text is on the
    /// screen.
    std::uint32_t startTerminal()
    {
        m_session.start("xterm",
                        {"-fa", "DejaVu Sans Mono", "-fs", "16", "-geometry", "50x8+600+60", "-e",
                         "sh", "-c", "echo The quick brown fox jumps over the dog; exec cat"});
        const std::uint32_t window = m_session.waitForWindow({"--class", "^XTerm$"});
        m_session.waitUntil("the text in the window", [&] {
            Program program;
            program.start({"read", "--capture", "window"});
            program.finish();
            return QString::fromUtf8(program.output()).contains(m_shown);
        });
        return window;
    }

    /// Has the popover over the terminal, with the tab for captures open.
    std::uint32_t launchOverTerminal()
    {
        launchToRead();
        const std::uint32_t terminal = startTerminal();
        show();
        EXPECT_TRUE(areaOf(popover()).intersects(areaOf(terminal)));
        choose("Capture");
        return terminal;
    }

    /// Makes the desktop so bright that what darkens it is seen.
    void brightenDesktop()
    {
        m_session.run("xsetroot", {"-solid", "#C0C0C0"});
        m_session.waitUntil("the bright desktop", [this] { return cornerGrey() == 0xC0; });
    }

    void waitForOverlay()
    {
        m_session.waitUntil("the overlay", [this] { return cornerGrey() < 0xC0; });
    }

    int cornerGrey()
    {
        const QImage image = screen();
        return qGray(image.pixel(0, image.height() - 1));
    }

    void drag(const QPoint& from, const QPoint& to)
    {
        moveTo(from);
        m_session.xdotool({"mousedown", "1"});
        moveTo((from + to) / 2);
        moveTo(to);
        m_session.xdotool({"mouseup", "1"});
    }

    void moveTo(const QPoint& point)
    {
        m_session.xdotool({"mousemove", QString::number(point.x()), QString::number(point.y())});
    }

    /// Whether the terminal's text is summarised, under this label.
    void expectTerminalsText(const std::string& label)
    {
        waitForSummary();
        waitUntilInFront(popover());
        EXPECT_THAT(sourceLine(), testing::StartsWith(label + " · "));
        const std::string text = source();
        EXPECT_THAT(text, HasSubstr(m_shown.toStdString()));
        EXPECT_THAT(text, Not(HasSubstr("Summarize"))); // no picture of the popover
    }

    /// What is told of the source above the summary.
    std::string sourceLine()
    {
        for (const ScreenReader::Node& node : m_reader.nodes()) {
            if (node.role == "label" && node.name.ends_with(" words"))
                return node.name;
        }
        return {};
    }

    LoopbackServer m_server;
    const QByteArray m_article = "The quick brown fox jumps over the lazy dog, and then it "
                                 "does so again and again until the evening comes.";
    const QString m_shown = "quick brown fox"; // and more, in the terminal
};

TEST_F(SourcesTest, ReturnInTheEditorIsALineBreakAndSummarizesElsewhere)
{
    launchToRead();
    show();
    waitUntilFocused("text", "Text to summarize");
    type("One.");
    press({"Return"});
    type("Two more.");
    m_session.waitUntil("the text", [this] { return source() == "One.\nTwo more."; });
    m_reader.find("label", "Pasted text · 3 words");
    m_reader.find("label", "Your summary will appear here.");
    press({"Tab", "Tab", "Tab"});
    waitUntilFocused("radio button", "3 Bullets");
    press({"Return"});
    waitForSummary();
}

TEST_F(SourcesTest, ReturnOnTheButtonSummarizes)
{
    launchToRead();
    show();
    enter("Some text.");
    press({"Tab", "Tab", "Tab", "Tab", "Tab"});
    waitUntilFocused("push button", "Summarize");
    press({"Return"});
    waitForSummary();
}

TEST_F(SourcesTest, WhatIsPastedIsSummarized)
{
    launchToRead();
    m_clipboard.put("Copied elsewhere.");
    show();
    waitUntilFocused("text", "Text to summarize");
    press({"ctrl+v"});
    m_reader.find("label", "Pasted text · 2 words");
    EXPECT_EQ(source(), "Copied elsewhere.");
    pressButton("Summarize");
    waitForSummary();
}

TEST_F(SourcesTest, BlanksAreNothingToSummarize)
{
    launchToRead();
    show();
    enter("  ");
    pressButton("Summarize");
    expectError("Nothing to summarize yet.");
}

TEST_F(SourcesTest, ClearTakesTheTextAndTheSummaryAway)
{
    launchToRead();
    show();
    enter("Some text.");
    pressButton("Summarize");
    waitForSummary();
    pressButton("Clear");
    m_reader.find("label", "Your summary will appear here.");
    EXPECT_EQ(source(), "");
    EXPECT_EQ(sourceLine(), "");
    EXPECT_FALSE(m_reader.find("push button", "Summarize").is(ScreenReader::enabled));
    EXPECT_FALSE(m_reader.find("push button", "Copy Markdown").is(ScreenReader::enabled));
    waitUntilFocused("text", "Text to summarize");
}

TEST_F(SourcesTest, TheClipboardIsSummarizedAndStays)
{
    launchToRead();
    m_clipboard.put("  Copied\r\n\r\n\r\n\r\nelsewhere.\n");
    show();
    pressButton("Use Clipboard");
    waitForSummary();
    m_reader.find("label", "Clipboard · 2 words");
    EXPECT_EQ(source(), "Copied\n\nelsewhere.");
    EXPECT_EQ(m_clipboard.text(), "  Copied\r\n\r\n\r\n\r\nelsewhere.\n");
}

TEST_F(SourcesTest, ABlankClipboardIsOneSentenceAndTheTextStays)
{
    launchToRead();
    m_clipboard.put(" \n");
    show();
    enter("Some text.");
    pressButton("Use Clipboard");
    expectError("The clipboard has no text.");
    EXPECT_EQ(source(), "Some text.");
}

TEST_F(SourcesTest, APageIsFetchedWithReturnAndSummarized)
{
    launchToRead();
    show();
    const QString address = pageWith(m_article);
    enterAddress(address);
    press({"Return"});
    waitForSummary();
    m_reader.find("label", address.toStdString() + " · 22 words");
    EXPECT_EQ(source(), "News\n\n" + m_article.toStdString());
    choose("Web");
    EXPECT_EQ(m_reader.text(m_reader.find("text", "Web address")), address.toStdString());
    EXPECT_EQ(m_server.requests().size(), 1U);
}

TEST_F(SourcesTest, WhileAPageIsFetchedThatIsShown)
{
    launchToRead();
    show();
    enterAddress(page({.body = "<p>" + m_article + "</p>", .stallAfter = 10}));
    pressButton("Fetch & Summarize");
    m_reader.find("label", "Fetching page…");
    m_reader.find("push button", "Stop");
    EXPECT_FALSE(m_reader.find("push button", "Fetch & Summarize").is(ScreenReader::enabled));
    m_server.release();
    waitForSummary();
    waitUntilEnabled("Fetch & Summarize");
}

TEST_F(SourcesTest, WhatIsWrongWithAPageIsOneSentenceAndTheTextStays)
{
    launchToRead();
    show();
    enter("Some text.");
    enterAddress(page({.status = 404}));
    pressButton("Fetch & Summarize");
    expectError("The page returned HTTP 404.");
    pageWith("Too short.");
    pressButton("Fetch & Summarize");
    expectError("Couldn't find readable text on that page.");
    page({.body = "<p>" + m_article + "</p>",
          .framing = LoopbackServer::Framing::chunked,
          .contentLength = 1000});
    pressButton("Fetch & Summarize");
    expectError("The connection was closed before the whole page had arrived.");
    EXPECT_EQ(source(), "Some text.");
    m_reader.find("label", "Pasted text · 2 words");
}

TEST_F(SourcesTest, AnAddressThatIsNoneIsOneSentence)
{
    launchToRead();
    show();
    enterAddress("ftp://example.com");
    press({"Return"});
    expectError("Enter a valid web address.");
}

TEST_F(SourcesTest, TheWindowBelowThePopoverIsRead)
{
    launchOverTerminal();
    pressButton("Active Window");
    expectTerminalsText("Active window");
}

TEST_F(SourcesTest, TheScreenIsReadWithoutThePopover)
{
    launchOverTerminal();
    pressButton("Full Screen");
    expectTerminalsText("Screen");
}

TEST_F(SourcesTest, TheAreaThatIsDraggedOutIsRead)
{
    const QRect terminal = areaOf(launchOverTerminal());
    brightenDesktop();
    pressButton("Select Area");
    waitForOverlay();
    EXPECT_FALSE(isShown());
    drag(terminal.topLeft(), terminal.bottomRight());
    expectTerminalsText("Selected area");
}

/// A screen with so many words on it that it takes long to read them.
class LongReadingTest : public SourcesTest
{
protected:
    LongReadingTest() : SourcesTest({.size = {2560, 1800}}) {}
};

// The recognition knows no end but its own.
TEST_F(LongReadingTest, QuitDoesNotWaitUntilAScreenIsRead)
{
    QProcess& process = launchToRead();
    const QString fill = "yes 'Many words on one line.' | fmt -w 390 | head -120; exec cat";
    m_session.start("xterm", {"-fa", "DejaVu Sans Mono", "-fs", "7", "-geometry", "400x120+0+0",
                              "-e", "sh", "-c", fill});
    m_session.waitForWindow({"--class", "^XTerm$"});
    show();
    choose("Capture");
    pressButton("Full Screen");
    waitUntilHidden();
    waitUntilShown();
    click(m_reader.find("push button", "Quit").area.center());
    waitForEndDuringWork(process);
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(complaints(process), "");
}

TEST_F(SourcesTest, EscapeCancelsTheSelectionAndThePopoverComesBack)
{
    launchOverTerminal();
    brightenDesktop();
    pressButton("Select Area");
    waitForOverlay();
    EXPECT_FALSE(isShown());
    press({"Escape"});
    waitUntilShown();
    expectError("Capture cancelled.");
    waitUntilInFront(popover());
    EXPECT_EQ(cornerGrey(), 0xC0);
}

TEST_F(SourcesTest, WithoutAnotherWindowThereIsNoneToRead)
{
    launchToRead();
    show();
    choose("Capture");
    pressButton("Active Window");
    expectError("No window found to capture.");
    EXPECT_TRUE(isShown());
}

TEST_F(SourcesTest, AnEmptyScreenHasNoText)
{
    launchToRead();
    show();
    choose("Capture");
    pressButton("Full Screen");
    expectError("No text found in Screen.");
    EXPECT_TRUE(isShown());
}

} // namespace
