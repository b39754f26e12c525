#include "AppStateFixture.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppStateHotkeyTest : public AppStateFixture
{
protected:
    const QString m_nothing = "Select some text first, or copy some.";
    const QString m_noAccess = "Pithwise can read other windows only in an X11 session. Choose one "
                               "when you log in.";

    /// Starts the flow; `isDone` tells its end.
    QCoro::Task<> press()
    {
        isDone = false;
        co_await state->handleHotkey();
        isDone = true;
    }

    void waitForDone()
    {
        EXPECT_TRUE(waitUntil([&] { return isDone; }));
    }

    bool isDone = false;
};

TEST_F(AppStateHotkeyTest, TheSelectedTextIsSummarized)
{
    state->tab = Tab::web;
    state->errorMessage = "earlier";
    press();
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->tab, Tab::web);
    answer(selections[0], Grabbed("selected"));
    waitForDone();
    EXPECT_EQ(state->tab, Tab::clipboard);
    EXPECT_EQ(state->sourceText.get(), "selected");
    EXPECT_EQ(state->sourceLabel.get(), "Selected text");
    expectWorking("Loading model…");
    EXPECT_THAT(captures.arguments(), IsEmpty());
    EXPECT_EQ(clipboardReads, 0);
}

TEST_F(AppStateHotkeyTest, AnEmptySelectionIsTakenForOneAndReported)
{
    press();
    answer(selections[0], Grabbed(""));
    waitForDone();
    EXPECT_EQ(state->tab, Tab::clipboard);
    expectIdle("No text found in Selected text.");
    EXPECT_THAT(captures.arguments(), IsEmpty());
}

TEST_F(AppStateHotkeyTest, WithoutASelectionTheFrontWindowIsRead)
{
    press();
    answer(selections[0], Grabbed());
    EXPECT_TRUE(waitUntil([&] { return state->isWorking.get(); }));
    EXPECT_EQ(state->tab, Tab::capture);
    expectWorking("Capturing and reading text…");
    captures.answer(0, "a\r\r\nb");
    waitForDone();
    EXPECT_THAT(captures.arguments(), ElementsAre(ScreenGrab::Kind::window));
    EXPECT_EQ(state->sourceText.get(), "a\r\nb"); // normalised once
    EXPECT_EQ(state->sourceLabel.get(), "Active window");
    EXPECT_EQ(state->tab, Tab::capture);
    expectWorking("Loading model…");
    EXPECT_EQ(clipboardReads, 0);
}

TEST_F(AppStateHotkeyTest, WithoutPermissionNothingIsCapturedAndTheClipboardIsUsed)
{
    mayCapture = false;
    clipboard = " copied ";
    press();
    answer(selections[0], Grabbed());
    waitForDone();
    EXPECT_THAT(captures.arguments(), IsEmpty());
    EXPECT_EQ(state->tab, Tab::clipboard);
    EXPECT_EQ(state->sourceText.get(), "copied");
    EXPECT_EQ(state->sourceLabel.get(), "Clipboard");
    expectWorking("Loading model…");
}

TEST_F(AppStateHotkeyTest, WithNothingAtAllThatIsExplained)
{
    mayCapture = false;
    state->tab = Tab::web;
    state->status = "kept";
    for (const auto& text : {std::optional<std::string>(), std::optional<std::string>(" \n")}) {
        clipboard = text;
        press();
        answer(selections.back(), Grabbed());
        waitForDone();
        EXPECT_EQ(state->errorMessage.get(), m_noAccess);
        EXPECT_EQ(state->tab, Tab::clipboard);
        EXPECT_EQ(state->status.get(), "kept");
    }
}

TEST_F(AppStateHotkeyTest, WhatIsUnderWayGoesOnUntilThereIsATextInItsPlace)
{
    mayCapture = false;
    startRun("text");
    EXPECT_TRUE(waitUntil([&] { return state->status.get() == "Summarizing…"; }));
    state->errorMessage = "earlier";
    press();
    expectWorking("Summarizing…");
    answer(selections[0], Grabbed());
    waitForDone();
    EXPECT_TRUE(state->isWorking);
    EXPECT_EQ(state->status.get(), "Summarizing…");
    EXPECT_EQ(state->errorMessage.get(), m_noAccess);
    EXPECT_FALSE(state->token()->isCancelled());
    engine.finish(0, "summary");
    waitForOutput("summary");
}

TEST_F(AppStateHotkeyTest, AClipboardThatCannotBeReadIsExplained)
{
    mayCapture = false;
    clipboardError = "Its owner does not answer.";
    press();
    answer(selections[0], Grabbed());
    waitForDone();
    expectIdle("Its owner does not answer.");
}

TEST_F(AppStateHotkeyTest, AWindowOfBlankTextIsNoneAndTheClipboardIsUsed)
{
    clipboard = "copied";
    press();
    answer(selections[0], Grabbed());
    captures.answer(0, " \n\u00A0");
    waitForDone();
    EXPECT_THAT(captures.arguments(), ElementsAre(ScreenGrab::Kind::window));
    EXPECT_EQ(snapshot(), "Clipboard | copied (Clipboard) |  | working Loading model… | no error");
}

TEST_F(AppStateHotkeyTest, AWindowThatCannotBeReadIsNoneAndNobodyHearsOfIt)
{
    press();
    answer(selections[0], Grabbed());
    captures.fail(0, "No window found to capture.");
    waitForDone();
    expectIdle(m_nothing);
    EXPECT_EQ(state->tab, Tab::clipboard);
}

TEST_F(AppStateHotkeyTest, PressedTwiceItRunsTwice)
{
    press();
    press();
    answer(selections[1], Grabbed("second"));
    waitForSource("second", "Selected text");
    waitForCalls(1);
    answer(selections[0], Grabbed("first"));
    waitForSource("first", "Selected text");
    waitForCalls(2);
    engine.finish(0, "summary of the second");
    engine.finish(1, "summary of the first");
    waitForOutput("summary of the first");
}

TEST_F(AppStateHotkeyTest, PressedAgainAndAgainTwoWindowsAreReadAtATimeAndEightWait)
{
    const auto threads = [] {
        const std::filesystem::directory_iterator all("/proc/self/task");
        return std::distance(begin(all), end(all));
    };
    const auto before = threads();
    for (int i = 0; i < 200; ++i)
        state->handleHotkey();
    ASSERT_EQ(selections.size(), 10U); // the others were dropped
    for (QPromise<Grabbed>& selection : selections)
        answer(selection, Grabbed());
    EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == 2; }));
    EXPECT_LE(threads(), before + 2);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(captures.arguments().size(), std::min<std::size_t>(i + 2, 10));
        captures.answer(i, " ");
        EXPECT_TRUE(waitUntil([&] {
            return captures.arguments().size() == std::min<std::size_t>(i + 3, 10) &&
                   clipboardReads == static_cast<int>(i) + 1;
        }));
    }
    EXPECT_TRUE(waitUntil([&] { return state->errorMessage.get() == m_nothing; }));
    state->handleHotkey();
    EXPECT_EQ(selections.size(), 11U);
    answer(selections.back(), Grabbed("selected"));
    waitForSource("selected", "Selected text");
}

TEST_F(AppStateHotkeyTest, AStateThatGoesBeforeTheTurnOfACaptureIsNotTouched)
{
    for (int i = 0; i < 4; ++i)
        state->capture(ScreenGrab::Kind::screen);
    EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == 2; }));
    captures.release();
    state.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.calls().size(), 0U);
}

TEST_F(AppStateHotkeyTest, CapturesOfEveryKindTakeTheirTurn)
{
    for (int i = 0; i < 3; ++i)
        state->capture(ScreenGrab::Kind::screen);
    press();
    answer(selections[0], Grabbed());
    EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == 2; }));
    constexpr auto screen = ScreenGrab::Kind::screen;
    EXPECT_THAT(captures.arguments(), ElementsAre(screen, screen));
    for (std::size_t i = 0; i < 4; ++i)
        captures.answer(i, " ");
    waitForDone();
    // The last two come at a time, in any order.
    EXPECT_THAT(captures.arguments(),
                testing::UnorderedElementsAre(screen, screen, screen, ScreenGrab::Kind::window));
}

TEST_F(AppStateHotkeyTest, AStateThatGoesMeanwhileIsNotTouched)
{
    state->handleHotkey();
    state.reset();
    answer(selections[0], Grabbed("selected"));
    QCoreApplication::processEvents();
    makeState();
    state->handleHotkey();
    answer(selections[1], Grabbed());
    EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == 1; }));
    captures.answer(0, "captured");
    state.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.calls().size(), 0U);
}

} // namespace
