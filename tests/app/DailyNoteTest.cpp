#include "DailyNoteFixture.h"

#include <sys/stat.h>

namespace {

using DailyNoteTest = DailyNoteFixture;

TEST_F(DailyNoteTest, TheFirstSummaryOfADayMakesFolderAndNoteWithAHeader)
{
    append("- one\n- two");
    EXPECT_EQ(content(note), "# Summaries — 2026-11-21\n"
                             "\n"
                             "## 09:05 — Selected text (TL;DR)\n"
                             "\n"
                             "- one\n"
                             "- two\n"
                             "\n");
    EXPECT_EQ(names(documents), std::set<std::string>{"Pithwise Notes"});
    EXPECT_EQ(names(folder), std::set<std::string>{"2026-11-21.md"});
}

TEST_F(DailyNoteTest, TheNextSummaryIsAddedWithoutAHeader)
{
    append("first");
    DailyNote::append(documents, {"report.pdf", SummaryMode::bullets, "second"}, now.addSecs(3600));
    append("third");
    EXPECT_EQ(content(note), header + entry("first") +
                                 "## 10:05 — report.pdf (3 Bullets)\n\nsecond\n\n" +
                                 entry("third"));
}

TEST_F(DailyNoteTest, WithoutALabelItSaysSummary)
{
    DailyNote::append(documents, {"", SummaryMode::executive, "text"}, now);
    DailyNote::append(documents, {" ", SummaryMode::actions, "text"}, now);
    EXPECT_EQ(content(note), header + "## 09:05 — Summary (Executive)\n\ntext\n\n"
                                      "## 09:05 —   (Actions)\n\ntext\n\n");
}

TEST_F(DailyNoteTest, JustAfterMidnightANewNoteBegins)
{
    const QDateTime midnight(QDate(2026, 11, 22), QTime(0, 0), QTimeZone::utc());
    DailyNote::append(documents, {"", SummaryMode::tldr, "old"}, midnight.addMSecs(-1));
    DailyNote::append(documents, {"", SummaryMode::tldr, "new"}, midnight);
    EXPECT_EQ(content(note), header + "## 23:59 — Summary (TL;DR)\n\nold\n\n");
    EXPECT_EQ(content(folder / "2026-11-22.md"),
              "# Summaries — 2026-11-22\n\n## 00:00 — Summary (TL;DR)\n\nnew\n\n");
}

TEST_F(DailyNoteTest, LabelAndSummaryAreWrittenAsTheyStand)
{
    DailyNote::append(documents,
                      {"two\nlines — 👩‍💻 **b**", SummaryMode::tldr, "\n \t*x*\r\n\n\n "},
                      now);
    EXPECT_EQ(content(note), header + "## 09:05 — two\nlines — 👩‍💻 **b** (TL;DR)\n\n"
                                      "\n \t*x*\r\n\n\n \n\n");
}

TEST_F(DailyNoteTest, AnEmptySummaryIsAnEntryToo)
{
    append("");
    append("");
    EXPECT_EQ(content(note), header + entry("") + entry(""));
}

TEST_F(DailyNoteTest, ASummaryOfTenMegabytesIsWhole)
{
    const QString output(10'000'000, 'x');
    append(output);
    append(output);
    const std::string large = output.toStdString();
    EXPECT_TRUE(content(note) == header + entry(large) + entry(large));
}

TEST_F(DailyNoteTest, NamesAndTimesFollowTheUsersLocale)
{
    const EnvironmentVariable arabic("LC_ALL", "ar_EG.UTF-8");
    append("text");
    EXPECT_EQ(content(folder / "٢٠٢٦-١١-٢١.md"),
              "# Summaries — ٢٠٢٦-١١-٢١\n\n## ٠٩:٠٥ — Selected text (TL;DR)\n\ntext\n\n");
    const EnvironmentVariable thai("LC_ALL", "th_TH.UTF-8");
    append("text");
    EXPECT_EQ(content(folder / "2569-11-21.md"), "# Summaries — 2569-11-21\n\n" + entry("text"));
}

TEST_F(DailyNoteTest, WhatTheUserHasWrittenIntoTheNoteStays)
{
    std::filesystem::create_directory(folder);
    write(note, "My own beginning, without a line feed");
    append("text");
    EXPECT_EQ(content(note), "My own beginning, without a line feed" + entry("text"));
    write(note, "");
    append("text");
    EXPECT_EQ(content(note), entry("text"));
}

TEST_F(DailyNoteTest, DocumentsAreMadeWithAllFoldersAbove)
{
    append(documents / "a" / "b", "text");
    EXPECT_EQ(content(documents / "a" / "b" / "Pithwise Notes" / "2026-11-21.md"),
              header + entry("text"));
}

TEST_F(DailyNoteTest, TheNoteHasTheUsualPermissions)
{
    const mode_t mask = ::umask(027);
    append("text");
    ::umask(mask);
    struct stat status;
    ASSERT_EQ(::stat(note.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_F(DailyNoteTest, ANoteBehindALinkIsAddedToWhereItLies)
{
    std::filesystem::create_directories(folder);
    write(documents / "elsewhere.md", "earlier\n");
    std::filesystem::create_symlink("../elsewhere.md", note);
    append("text");
    EXPECT_EQ(content(documents / "elsewhere.md"), "earlier\n" + entry("text"));
    EXPECT_TRUE(std::filesystem::is_symlink(note));
}

TEST_F(DailyNoteTest, ALinkToNothingLeadsToTheNewNote)
{
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink("../second", folder / "2026-11-21.md");
    std::filesystem::create_symlink(documents / "elsewhere.md", documents / "second");
    append("text");
    EXPECT_EQ(content(documents / "elsewhere.md"), header + entry("text"));
    EXPECT_TRUE(std::filesystem::is_symlink(note));
    EXPECT_EQ(names(documents),
              (std::set<std::string>{"Pithwise Notes", "elsewhere.md", "second"}));
}

TEST_F(DailyNoteTest, ALinkIntoAFolderThatIsMissingLeadsToANoteThere)
{
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(documents / "a" / "b.md", note);
    append("text");
    EXPECT_EQ(content(documents / "a" / "b.md"), header + entry("text"));
}

TEST_F(DailyNoteTest, AFolderBehindALinkIsUsed)
{
    std::filesystem::create_directory(documents / "synchronised");
    std::filesystem::create_directory_symlink("synchronised", folder);
    append("text");
    EXPECT_EQ(content(documents / "synchronised" / "2026-11-21.md"), header + entry("text"));
}

} // namespace
