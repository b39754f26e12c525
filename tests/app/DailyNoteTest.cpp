#include "DailyNoteFixture.h"

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
    DailyNote::append(
        documents,
        {"# two  words — 👩‍💻 **b** \u200Fא", SummaryMode::tldr, "\n \t*x*\r\n\n\n "},
        now);
    EXPECT_EQ(content(note),
              header + "## 09:05 — # two  words — 👩‍💻 **b** \u200Fא (TL;DR)\n\n"
                       "\n \t*x*\r\n\n\n \n\n");
}

TEST_F(DailyNoteTest, ALabelStaysOnTheLineOfItsHeading)
{
    for (const int character : {0x0A, 0x0D, 0x09, 0x0B, 0x0C, 0x00, 0x85, 0x2028, 0x2029, 0x1B,
                                0x7F, 0x9B, 0x202E, 0x2066}) {
        const QString label = QStringLiteral("a%1# b.txt").arg(QChar(character));
        DailyNote::append(documents, {label, SummaryMode::tldr, "text"}, now);
        EXPECT_EQ(content(note), header + "## 09:05 — a # b.txt (TL;DR)\n\ntext\n\n") << character;
        std::filesystem::remove(note);
    }
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

TEST_F(DailyNoteTest, OnlyTheUserMayReadWhatIsNew)
{
    const mode_t mask = ::umask(022);
    append("text");
    ::umask(mask);
    EXPECT_EQ(mode(note), 0600u);
    EXPECT_EQ(mode(folder), 0700u);
}

TEST_F(DailyNoteTest, WhatIsThereKeepsItsPermissions)
{
    append("text");
    ASSERT_EQ(::chmod(note.c_str(), 0644), 0);
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    append("text");
    EXPECT_EQ(mode(note), 0644u);
    EXPECT_EQ(mode(folder), 0755u);
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

TEST_F(DailyNoteTest, ALinkIntoAFolderThatIsMissingMakesNoFolder)
{
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(documents / "a" / "b.md", note);
    EXPECT_EQ(failure(), sentence(ENOENT));
    EXPECT_EQ(names(documents), std::set<std::string>{"Pithwise Notes"});
}

TEST_F(DailyNoteTest, AFolderBehindALinkIsUsed)
{
    std::filesystem::create_directory(documents / "synchronised");
    std::filesystem::create_directory_symlink("synchronised", folder);
    append("text");
    EXPECT_EQ(content(documents / "synchronised" / "2026-11-21.md"), header + entry("text"));
}

} // namespace
