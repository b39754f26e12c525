#include "AppStateFixture.h"

#include <QAbstractEventDispatcher>

#include <set>

namespace {

using testing::ElementsAre;
using testing::EndsWith;

using AppStateSummarizeTest = AppStateFixture;

TEST_F(AppStateSummarizeTest, WithNothingToSummarizeThatIsAllThatIsSaid)
{
    for (const char* text : {"", " \n\t"}) {
        state->sourceText = text;
        state->isWorking = true;
        state->status = "busy";
        state->output = "kept";
        state->summarize();
        EXPECT_EQ(state->errorMessage.get(), "Nothing to summarize yet.");
        EXPECT_TRUE(state->isWorking);
        EXPECT_EQ(state->status.get(), "busy");
        EXPECT_EQ(state->output.get(), "kept");
        EXPECT_EQ(state->token(), nullptr);
    }
}

TEST_F(AppStateSummarizeTest, WithoutAModelThatIsSaidAndTheRunBeforeGoesOn)
{
    startRun("text");
    const auto token = state->token();
    isModelReady = false;
    state->summarize();
    EXPECT_EQ(state->errorMessage.get(), "The language model is still downloading.");
    EXPECT_TRUE(state->isWorking);
    EXPECT_EQ(state->token(), token);
    EXPECT_FALSE(token->isCancelled());
    engine.finish(0, "summary");
    waitForOutput("summary");
}

TEST_F(AppStateSummarizeTest, WithoutAModelASourceActionLeavesItsReadingStatus)
{
    isModelReady = false;
    documents.answer(0, "text");
    state->loadFile("/folder/notes.txt");
    waitForError("The language model is still downloading.");
    EXPECT_TRUE(state->isWorking);
    EXPECT_EQ(state->status.get(), "Reading notes.txt…");
    EXPECT_EQ(state->token(), nullptr);
    EXPECT_EQ(state->sourceText.get(), "text");
}

TEST_F(AppStateSummarizeTest, ARunGetsTheTrimmedTextTheModeAndTheLengthOfItsStart)
{
    state->mode = SummaryMode::actions;
    state->length = 1.6;
    startRun("\n  a naïve text\u2029 ");
    state->mode = SummaryMode::tldr;
    state->length = 0;
    const Pithwise::Instruction instruction =
        Pithwise::instruction(SummaryMode::actions, SummaryLength::detailed);
    EXPECT_EQ(engine.calls()[0].user, instruction.text + "\n\nText:\na naïve text");
    EXPECT_EQ(engine.calls()[0].maxTokens, instruction.maxTokens);
}

TEST_F(AppStateSummarizeTest, ARunShowsItsStepsAndEndsWithTheSummary)
{
    state->errorMessage = "earlier";
    state->output = "earlier";
    startRun("text");
    EXPECT_EQ(state->output.get(), "");
    EXPECT_TRUE(waitUntil([&] { return state->status.get() == "Summarizing…"; }));
    expectWorking("Summarizing…");
    engine.update(0, " - The");
    waitForOutput(" - The");
    engine.update(0, " - The end ");
    waitForOutput(" - The end ");
    expectWorking("Summarizing…");
    engine.finish(0, "- The end");
    waitForOutput("- The end");
    expectIdle();
    EXPECT_FALSE(state->token()->isCancelled());
}

TEST_F(AppStateSummarizeTest, AFailingRunKeepsWhatItHasWritten)
{
    startRun("text");
    engine.update(0, "- The");
    engine.fail(0, "Model evaluation failed (1).");
    waitForError("Model evaluation failed (1).");
    expectIdle("Model evaluation failed (1).");
    EXPECT_EQ(state->output.get(), "- The");
}

TEST_F(AppStateSummarizeTest, WantOfMemoryIsASentence)
{
    AppServices without = services();
    without.generate = [](auto&&...) -> std::string { throw std::bad_alloc(); };
    state = std::make_unique<AppState>(without);
    state->sourceText = "text";
    state->summarize();
    waitForError("There is not enough memory.");
}

TEST_F(AppStateSummarizeTest, StopEndsTheRunAtOnceAndItsSummaryNeverShows)
{
    startRun("text");
    engine.update(0, "- The");
    waitForOutput("- The");
    state->stop();
    expectIdle();
    EXPECT_TRUE(state->token()->isCancelled());
    QCoreApplication::processEvents();
    moments.clear();
    engine.update(0, "- The late");
    engine.finish(0, "- The late summary");
    waitForRuns(0);
    EXPECT_EQ(state->output.get(), "- The");
    expectIdle();
    EXPECT_THAT(moments, ElementsAre());
}

TEST_F(AppStateSummarizeTest, StopHoldsBackWhatIsOnItsWayAlready)
{
    startRunUnheard("text");
    engine.update(0, "- The");
    engine.fail(0, "Too late.");
    waitForRunsUnheard(0);
    state->stop();
    QCoreApplication::processEvents();
    expectIdle();
    EXPECT_EQ(state->output.get(), "");
}

TEST_F(AppStateSummarizeTest, StopWithoutARunOnlyClearsTheActivity)
{
    state->isWorking = true;
    state->status = "Reading…";
    state->errorMessage = "kept";
    state->output = "kept";
    state->stop();
    expectIdle("kept");
    EXPECT_EQ(state->output.get(), "kept");
    EXPECT_EQ(state->token(), nullptr);
}

TEST_F(AppStateSummarizeTest, OfTwoRunsTheFirstIsCancelledAndNeverHeardOfAgain)
{
    startRun("first");
    const std::shared_ptr<const CancelToken> first = state->token();
    startRun("second", 1);
    EXPECT_TRUE(first->isCancelled());
    EXPECT_NE(state->token(), first);
    engine.update(1, "second");
    waitForOutput("second");
    QCoreApplication::processEvents();
    moments.clear();
    engine.update(0, "first");
    engine.finish(0, "first summary");
    waitForRuns(1);
    EXPECT_THAT(moments, ElementsAre());
    engine.finish(1, "second summary");
    waitForOutput("second summary");
    expectIdle();
}

TEST_F(AppStateSummarizeTest, AFirstRunThatFailsLateSaysNothing)
{
    startRun("first");
    startRun("second", 1);
    EXPECT_TRUE(waitUntil([&] { return state->status.get() == "Summarizing…"; }));
    engine.fail(0, "Model not loaded.");
    waitForRuns(1);
    expectWorking("Summarizing…");
}

TEST_F(AppStateSummarizeTest, ManyRunsWaitOnThreadsOfTheirOwn)
{
    for (std::size_t number = 0; number < 20; ++number)
        startRun(QString::number(number), number);
    std::set<std::thread::id> threads;
    for (const ScriptedEngine::Call& call : engine.calls())
        threads.insert(call.thread);
    EXPECT_EQ(threads.size(), 20U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
    engine.finish(19, "last");
    waitForOutput("last");
}

TEST_F(AppStateSummarizeTest, HoweverFastTokensComeAFieldIsSetOnceATurn)
{
    startRun("text");
    EXPECT_TRUE(waitUntil([&] { return state->status.get() == "Summarizing…"; }));
    int turns = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                     state.get(), [&turns] { ++turns; });
    int changes = 0;
    QObject::connect(state.get(), &AppState::willChange, state.get(), [&] { ++changes; });
    std::string text;
    for (int token = 0; token < 5000; ++token)
        engine.update(0, text += "token ");
    waitForOutput(QString::fromStdString(text));
    EXPECT_LE(changes, turns);
    EXPECT_GE(changes, 1);
    changes = 0;
    engine.update(0, text += "end");
    engine.finish(0, "summary");
    // The text before the summary shows at most once more, the summary once.
    waitForOutput("summary");
    EXPECT_LE(changes, 4);
}

TEST_F(AppStateSummarizeTest, WhatComesTogetherIsShownTogether)
{
    startRunUnheard("text");
    engine.update(0, "- The");
    engine.update(0, "- The end");
    // All of it is there before the event loop has its next turn.
    while (engine.updates() < 2)
        std::this_thread::yield();
    waitForOutput("- The end");
    QCoreApplication::processEvents();
    EXPECT_THAT(moments, ElementsAre(EndsWith("|  | working Loading model… | no error"),
                                     EndsWith("| - The end | working Summarizing… | no error")));
}

TEST_F(AppStateSummarizeTest, TheSummaryTakesThePlaceOfWhatItMakesObsolete)
{
    startRunUnheard("text");
    engine.update(0, "- The");
    engine.finish(0, "- The end.");
    waitForRunsUnheard(0);
    waitForOutput("- The end.");
    QCoreApplication::processEvents();
    EXPECT_THAT(moments, ElementsAre(EndsWith("|  | working Loading model… | no error"),
                                     EndsWith("| - The end. | idle  | no error")));
}

TEST_F(AppStateSummarizeTest, AFailureComesAfterWhatWasWrittenBeforeIt)
{
    startRunUnheard("text");
    engine.update(0, "- The");
    engine.fail(0, "Broken.");
    waitForRunsUnheard(0);
    waitForError("Broken.");
    EXPECT_EQ(state->output.get(), "- The");
    expectIdle("Broken.");
}

TEST_F(AppStateSummarizeTest, AStateMayGoInTheMiddleOfARun)
{
    startRun("text");
    bool isArmed = false;
    QObject::connect(state.get(), &AppState::willChange, qApp, [&] { isArmed = true; });
    engine.update(0, "- The");
    EXPECT_TRUE(waitUntil([&] { return isArmed; }));
    engine.update(0, "- The end");
    engine.finish(0, "- The end.");
    state.reset();
    waitForRuns(0);
}

} // namespace
