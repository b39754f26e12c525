#include "AppStateFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppStateOutputTest : public AppStateFixture
{
protected:
    /// What stands on the clipboard after the output has been put there without markers.
    std::string plain(const QString& markdown)
    {
        pasteboardCalls.clear();
        state->output = markdown;
        state->replaceClipboard();
        EXPECT_EQ(pasteboardCalls.size(), 2U);
        EXPECT_EQ(pasteboardCalls[0], "clear");
        return pasteboardCalls[1].substr(std::string("writeText ").size());
    }
};

TEST_F(AppStateOutputTest, TheMarkdownIsCopiedAsItStands)
{
    state->output = " **Bold** naïve 👩\n";
    state->copyMarkdown();
    EXPECT_THAT(pasteboardCalls, ElementsAre("clear", "writeText  **Bold** naïve 👩\n"));
    EXPECT_EQ(state->toast.get(), "Markdown copied");
}

TEST_F(AppStateOutputTest, AnEmptyOutputIsCopiedAsAnEmptyText)
{
    state->copyMarkdown();
    EXPECT_THAT(pasteboardCalls, ElementsAre("clear", "writeText "));
}

TEST_F(AppStateOutputTest, ASummaryInProgressIsCopiedAsFarAsItIs)
{
    startRun("text");
    engine.update(0, "- The");
    waitForOutput("- The");
    state->copyMarkdown();
    EXPECT_THAT(pasteboardCalls, ElementsAre("clear", "writeText - The"));
}

TEST_F(AppStateOutputTest, TheClipboardIsReplacedByTheTextWithoutBoldMarkers)
{
    EXPECT_EQ(plain("**bold** plain"), "bold plain");
    EXPECT_EQ(state->toast.get(), "Clipboard replaced");
    EXPECT_EQ(plain("***"), "*");
    EXPECT_EQ(plain("****"), "");
    EXPECT_EQ(plain("*****x"), "*x");
    EXPECT_EQ(plain("# Title\n* item\n_soft_ *soft* * *"), "# Title\n* item\n_soft_ *soft* * *");
    EXPECT_EQ(state->output.get(), "# Title\n* item\n_soft_ *soft* * *");
}

TEST_F(AppStateOutputTest, ANoteGetsTheLabelAndTheModeOfTheMomentAndTheOutput)
{
    state->output = " - one\n";
    state->sourceLabel = "Selected text";
    state->mode = SummaryMode::tldr;
    state->errorMessage = "kept";
    state->appendToDailyNote();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].folder, "/documents");
    EXPECT_EQ(notes[0].entry.label, "Selected text");
    EXPECT_EQ(notes[0].entry.mode, SummaryMode::tldr);
    EXPECT_EQ(notes[0].entry.output, " - one\n");
    EXPECT_EQ(notes[0].time, now);
    EXPECT_EQ(state->toast.get(), "Added to today's note");
    EXPECT_EQ(state->errorMessage.get(), "kept");
    EXPECT_THAT(pasteboardCalls, IsEmpty());
}

TEST_F(AppStateOutputTest, ANoteWithoutALabelIsLeftToTheNote)
{
    state->appendToDailyNote();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].entry.label, ""); // for which the note has a word
    EXPECT_EQ(notes[0].entry.output, "");
}

TEST_F(AppStateOutputTest, AFolderThatCannotBeHadIsExplained)
{
    folderError = "There is no home.";
    state->appendToDailyNote();
    EXPECT_EQ(state->errorMessage.get(), "Couldn't write the daily note: There is no home.");
    EXPECT_EQ(state->toast.get(), std::nullopt);
    EXPECT_TRUE(notes.empty());
}

TEST_F(AppStateOutputTest, ANoteThatCannotBeWrittenIsAnErrorWithoutANotice)
{
    noteError = "The disk is full.";
    state->appendToDailyNote();
    EXPECT_EQ(state->errorMessage.get(), "Couldn't write the daily note: The disk is full.");
    EXPECT_EQ(state->toast.get(), std::nullopt);
}

} // namespace
