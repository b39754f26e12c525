#include "ReaderFixture.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// What becomes of a summary: on the clipboard and in the note of the day.
class OutputTest : public ReaderFixture
{
protected:
    QProcess& launchWithSummary(const QStringList& variables = {})
    {
        QProcess& process = launchToReadOn(standin(m_markdown), variables);
        show();
        enter("Some text.");
        pressButton("Summarize");
        waitUntilEnabled("Copy Markdown");
        EXPECT_EQ(summary(), m_shown);
        return process;
    }

    /// Presses a button and returns when the line below it has said what it has done, and no longer
    /// does.
    void pressAndRead(const std::string& button, const std::string& notice)
    {
        pressButton(button);
        m_reader.find("label", notice);
        m_session.waitUntil("the notice to go", [&] { return !m_reader.lookFor("label", notice); });
    }

    /// The one note there is.
    std::string note()
    {
        const QStringList names = m_notes.entryList(QDir::Files | QDir::Hidden);
        EXPECT_EQ(names.size(), 1);
        QFile file(m_notes.filePath(names.value(0)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    /// Before the program for it to heed the permissions of files, which root does not.
    static QStringList ordinary()
    {
        if (::geteuid() != 0)
            return {};
        return {"setpriv", "--bounding-set", "-dac_override,-dac_read_search", "env"};
    }

    const std::string m_markdown = "- The **first** takeaway.\n- A naïve *third* 👩.";
    const std::string m_plain = "- The first takeaway.\n- A naïve *third* 👩.";
    const std::string m_shown = "• The first takeaway.\n• A naïve third 👩.";
    const QDir m_notes{m_session.path("home/Documents/Pithwise Notes")};
};

TEST_F(OutputTest, TheMarkdownIsCopied)
{
    launchWithSummary();
    m_clipboard.put("earlier");
    pressAndRead("Copy Markdown", "Markdown copied");
    EXPECT_EQ(m_clipboard.text().toStdString(), m_markdown);
}

TEST_F(OutputTest, TheClipboardIsReplacedByThePlainSummary)
{
    launchWithSummary();
    m_clipboard.put("earlier");
    pressAndRead("Replace Clipboard", "Clipboard replaced");
    EXPECT_EQ(m_clipboard.text().toStdString(), m_plain);
}

TEST_F(OutputTest, WhatIsCopiedOutlivesTheApplication)
{
    QProcess& process = launchWithSummary();
    pressButton("Replace Clipboard");
    waitUntilTold("Clipboard replaced");
    pressButton("Quit");
    m_session.waitForEnd(process);
    EXPECT_EQ(m_clipboard.text().toStdString(), m_plain);
    m_clipboard.put("later");
    EXPECT_EQ(m_clipboard.text(), "later");
}

TEST_F(OutputTest, WhatIsCopiedCanBeSummarized)
{
    launchWithSummary();
    pressButton("Copy Markdown");
    waitUntilTold("Markdown copied");
    pressButton("Use Clipboard");
    m_reader.find("label", "Clipboard · 9 words");
    EXPECT_EQ(source(), m_markdown);
}

TEST_F(OutputTest, TheSummaryAsItIsShownCanBeSelectedAndCopied)
{
    launchWithSummary();
    m_reader.perform(m_reader.find("label", "Summary"), "SetFocus");
    waitUntilFocused("label", "Summary");
    press({"ctrl+a", "ctrl+c"});
    m_session.waitUntil("the copy", [this] { return m_clipboard.text().toStdString() == m_shown; });
}

TEST_F(OutputTest, ALinkIsOpenedByTheDesktop)
{
    const QString opener = m_session.path("xdg-open");
    QFile script(opener);
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nprintf '%s\n' \"$@\" > \"$HOME/opened\"\n");
    script.close();
    ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    launchToReadOn(standin("[The source](https://example.com/a?b=c)"),
                   {"PATH=" + m_session.path(".") + ":" + qEnvironmentVariable("PATH")});
    show();
    enter("Some text.");
    pressButton("Summarize");
    m_session.waitUntil("the summary", [this] { return summary() == "The source"; });
    const QPoint intoTheFirstWord(20, 20);
    click(m_reader.find("label", "Summary").area.topLeft() + intoTheFirstWord);
    QFile opened(m_session.path("home/opened"));
    m_session.waitUntil("the link to be opened", [&] {
        const bool isThere = opened.open(QIODevice::ReadOnly);
        const QByteArray address = opened.readAll();
        opened.close();
        return isThere && address == "https://example.com/a?b=c\n";
    });
}

TEST_F(OutputTest, TheNoteOfTheDayGetsOneEntryAfterTheOther)
{
    launchWithSummary();
    pressAndRead("Daily Note", "Added to today's note");
    const std::string first = note();
    EXPECT_THAT(first, MatchesRegex("# Summaries — [0-9-]{10}\n\n## [0-9:]{5} — Pasted text "
                                    "\\(3 Bullets\\)\n\n[^#]*"));
    EXPECT_TRUE(first.ends_with(")\n\n" + m_markdown + "\n\n"));

    m_clipboard.put("Some copied text.");
    pressButton("Use Clipboard");
    m_reader.find("label", "Clipboard · 3 words");
    choose("Actions");
    waitUntilEnabled("Daily Note");
    pressAndRead("Daily Note", "Added to today's note");
    const std::string both = note();
    ASSERT_THAT(both, StartsWith(first));
    const std::string second = both.substr(first.size());
    EXPECT_THAT(second, MatchesRegex("## [0-9:]{5} — Clipboard \\(Actions\\)\n\n[^#]*"));
    EXPECT_TRUE(second.ends_with(")\n\n" + m_markdown + "\n\n"));
}

TEST_F(OutputTest, ANoteThatCannotBeWrittenIsOneSentenceAndLosesNothing)
{
    ASSERT_TRUE(m_notes.mkpath("."));
    const QString folder = m_notes.path();
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    launchWithSummary(ordinary());
    pressButton("Daily Note");
    m_reader.find("text", "Couldn't write the daily note: Permission denied.");
    EXPECT_FALSE(m_reader.lookFor("label", "Added to today's note"));
    EXPECT_EQ(m_notes.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());

    // The summary is there still, and can be put elsewhere.
    pressButton("Copy Markdown");
    waitUntilTold("Markdown copied");
    EXPECT_EQ(m_clipboard.text().toStdString(), m_markdown);
    ASSERT_TRUE(
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    pressAndRead("Daily Note", "Added to today's note");
    EXPECT_THAT(note(), HasSubstr(m_markdown));
    pressButton("Summarize");
    m_session.waitUntil("the summary", [this] { return summary() == m_shown; });
}

TEST_F(OutputTest, AFileInPlaceOfTheFolderIsOneSentenceAndStays)
{
    ASSERT_TRUE(QDir().mkpath(m_session.path("home/Documents")));
    QFile file(m_notes.path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
    file.close();
    launchWithSummary();
    pressButton("Daily Note");
    m_reader.find("text", "Couldn't write the daily note: Not a directory.");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "mine");
}

} // namespace
