#include "Segment.h"
#include "SegmentedControl.h"
#include "TextEditor.h"
#include "ViewFixture.h"

#include <QSlider>

class MainViewTest : public ViewTest
{
protected:
    QStringList choices(const char* control) const
    {
        QStringList texts;
        for (const Segment* segment : find<SegmentedControl>(control).segments())
            texts.push_back(segment->text());
        return texts;
    }

    void choose(const char* control, std::size_t index) const
    {
        QTest::mouseClick(find<SegmentedControl>(control).segments()[index], Qt::LeftButton);
        settle();
    }

    void moveSlider(Qt::Key key) const
    {
        find("length").setFocus();
        press(key);
    }

    /// Lets the state have a summary, by a run that has ended.
    void makeSummary()
    {
        engine.finish(0, "A summary.");
        startRun(QStringLiteral("A text."));
        waitForRuns(0);
        settle();
        ASSERT_EQ(state->output.get(), QStringLiteral("A summary."));
    }
};

TEST_F(MainViewTest, TheTabsAreInTheirOrder)
{
    EXPECT_EQ(choices("tabs"), QStringList({"Clipboard", "Document", "Web", "Capture"}));
}

TEST_F(MainViewTest, TheModesAreInTheirOrder)
{
    EXPECT_EQ(choices("modes"), QStringList({"3 Bullets", "Executive", "TL;DR", "Actions"}));
}

TEST_F(MainViewTest, TheLayoutHasItsSizes)
{
    show();
    EXPECT_EQ(margins(find("tabs")).left(), 12);
    EXPECT_EQ(margins(find("tabs")).right(), 12);
    const QRect tabs = place(find("tabs"));
    const QRect area = place(find("tabArea"));
    const QRect modes = place(find("modes"));
    const QRect length = place(*find("length").parentWidget());
    const QRect action = place(*find("summarize").parentWidget());
    const QRect output = place(find("output"));
    EXPECT_EQ(find("tabs").mapTo(&find("main"), QPoint()), QPoint(12, 12));
    EXPECT_EQ(area.height(), 130);
    EXPECT_EQ(area.width(), 436);
    EXPECT_EQ(area.top() - tabs.bottom() - 1, 10);
    EXPECT_EQ(modes.top() - area.bottom() - 1, 10);
    EXPECT_EQ(length.top() - modes.bottom() - 1, 8);
    EXPECT_EQ(action.top() - length.bottom() - 1, 8);
    EXPECT_EQ(output.top() - action.bottom() - 1, 10);
    EXPECT_EQ(place(find("main")).bottom() - output.bottom(), 12);
    EXPECT_EQ(find("lengthLabel").width(), 60);
    EXPECT_EQ(place(find("lengthLabel")).left() - place(find("length")).right() - 1, 8);
}

TEST_F(MainViewTest, ATabIsChosenWithTheMouseAndByTheState)
{
    show();
    const std::vector<const char*> shown = {"editor", "dropZone", "address", "captureWindow"};
    for (std::size_t i = 0; i < shown.size(); ++i) {
        choose("tabs", i);
        EXPECT_EQ(state->tab.get(), AppState::allTabs.at(i));
        for (std::size_t page = 0; page < shown.size(); ++page)
            EXPECT_EQ(isShown(shown[page]), page == i) << shown[page];
    }
    open(Tab::clipboard);
    EXPECT_EQ(find<SegmentedControl>("tabs").index(), 0);
    EXPECT_TRUE(isShown("editor"));
}

TEST_F(MainViewTest, SwitchingTabsKeepsTheSource)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    state->sourceLabel = QStringLiteral("a.txt");
    for (std::size_t tab = 0; tab < 4; ++tab) {
        choose("tabs", tab);
        EXPECT_EQ(state->sourceText.get(), QStringLiteral("A text."));
        EXPECT_EQ(text("sourceLine"), QStringLiteral("a.txt · 2 words"));
    }
    choose("tabs", 0);
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("A text."));
}

TEST_F(MainViewTest, AModeIsChosenWithTheMouseAndByTheState)
{
    show();
    for (std::size_t i = 0; i < allSummaryModes.size(); ++i) {
        choose("modes", i);
        EXPECT_EQ(state->mode.get(), allSummaryModes.at(i));
    }
    state->mode = SummaryMode::executive;
    settle();
    EXPECT_EQ(find<SegmentedControl>("modes").index(), 1);
}

TEST_F(MainViewTest, TheSliderHasThreeStopsWithTheirLabels)
{
    show();
    EXPECT_EQ(text("lengthLabel"), QStringLiteral("Balanced"));
    EXPECT_EQ(find<QSlider>("length").value(), 1);
    moveSlider(Qt::Key_Right);
    EXPECT_EQ(state->length.get(), 2.0);
    EXPECT_EQ(text("lengthLabel"), QStringLiteral("Detailed"));
    EXPECT_EQ(find("length").accessibleDescription(), QStringLiteral("Detailed"));
    moveSlider(Qt::Key_Right);
    EXPECT_EQ(state->length.get(), 2.0);
    moveSlider(Qt::Key_Home);
    EXPECT_EQ(state->length.get(), 0.0);
    EXPECT_EQ(text("lengthLabel"), QStringLiteral("Brief"));
    QWidget& slider = find("length");
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(slider.width() * 2 / 5, 12));
    settle();
    EXPECT_EQ(state->length.get(), 1.0) << "it snaps";
}

TEST_F(MainViewTest, ALengthBetweenTheStopsStays)
{
    show();
    state->length = 1.6;
    settle();
    EXPECT_EQ(state->length.get(), 1.6);
    EXPECT_EQ(text("lengthLabel"), QStringLiteral("Detailed"));
}

TEST_F(MainViewTest, WithoutASourceNothingCanBeSummarised)
{
    show();
    EXPECT_FALSE(button("summarize").isEnabled());
    EXPECT_FALSE(button("clear").isEnabled());
    EXPECT_EQ(text("sourceLine"), QString());
}

TEST_F(MainViewTest, OneCharacterEnablesAndIsCounted)
{
    show();
    view->takeFocus();
    type(QStringLiteral("a"));
    EXPECT_TRUE(button("summarize").isEnabled());
    EXPECT_TRUE(button("clear").isEnabled());
    EXPECT_EQ(text("sourceLine"), QStringLiteral("Pasted text · 1 words"));
}

TEST_F(MainViewTest, ALabelIsShownLiterally)
{
    show();
    state->sourceText = QStringLiteral("a b");
    state->sourceLabel = QStringLiteral("<b>%2 &amp; %1.txt");
    settle();
    EXPECT_EQ(text("sourceLine"), QStringLiteral("<b>%2 &amp; %1.txt · 2 words"));
    EXPECT_EQ(find<QLabel>("sourceLine").textFormat(), Qt::PlainText);
}

TEST_F(MainViewTest, AnyLabelLeavesTheButtonItsPlace)
{
    show();
    const QRect before = place(button("summarize"));
    state->sourceText = QStringLiteral("a b");
    state->sourceLabel = QStringLiteral("a\nb").repeated(100'000);
    settle();
    EXPECT_EQ(place(button("summarize")), before);
    EXPECT_EQ(view->size(), QSize(460, 640));
}

TEST_F(MainViewTest, ALargeTextIsCountedWhenTheTypingPauses)
{
    show();
    state->sourceText = (QStringLiteral("a ").repeated(300) + u'\n').repeated(2'000);
    state->sourceLabel = QStringLiteral("large.txt");
    settle();
    EXPECT_TRUE(button("summarize").isEnabled()) << "at once";
    EXPECT_TRUE(waitUntil([&] { return text("sourceLine") == u"large.txt · 600000 words"; }));
    view->takeFocus();
    type(QStringLiteral("b "));
    EXPECT_TRUE(waitUntil([&] { return text("sourceLine") == u"large.txt · 600001 words"; }));
    state->sourceText = QStringLiteral("a");
    settle();
    EXPECT_EQ(text("sourceLine"), QStringLiteral("large.txt · 1 words"));
}

TEST_F(MainViewTest, SummarizeStartsAndStopStops)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    EXPECT_TRUE(isShown("summarize"));
    EXPECT_FALSE(isShown("stop"));
    click("summarize");
    EXPECT_TRUE(state->isWorking);
    EXPECT_FALSE(isShown("summarize"));
    EXPECT_TRUE(isShown("stop"));
    click("stop");
    EXPECT_FALSE(state->isWorking);
    EXPECT_TRUE(state->token()->isCancelled());
    EXPECT_TRUE(isShown("summarize"));
}

TEST_F(MainViewTest, TheFocusStaysWithTheButtonThatIsThere)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    button("summarize").setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(button("stop").hasFocus());
    press(Qt::Key_Space);
    EXPECT_TRUE(button("summarize").hasFocus());
}

TEST_F(MainViewTest, ReturnSummarisesWhereverItHasNoUseOfItsOwn)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    EXPECT_TRUE(button("summarize").isDefault());
    for (const char* name : {"segment0", "summarize", "length", "main"}) {
        find(name).setFocus();
        press(name == std::string("length") ? Qt::Key_Enter : Qt::Key_Return);
        EXPECT_TRUE(state->isWorking) << name;
        state->stop();
        settle();
    }
}

TEST_F(MainViewTest, ReturnDoesNothingWhileSummarizeIsDisabledOrReplaced)
{
    show();
    find("length").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    state->sourceText = QStringLiteral("A text.");
    state->summarize();
    const auto token = state->token();
    settle();
    press(Qt::Key_Return);
    EXPECT_EQ(state->token(), token);
    EXPECT_TRUE(state->isWorking);
}

TEST_F(MainViewTest, ReturnInTheEditorIsALineBreak)
{
    show();
    view->takeFocus();
    type(QStringLiteral("a"));
    press(Qt::Key_Return);
    type(QStringLiteral("b"));
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("a\nb"));
    EXPECT_FALSE(state->isWorking);
}

TEST_F(MainViewTest, ReturnInAnEditorThatCannotBeWrittenInSummarises)
{
    show();
    state->sourceText = QString(TextEditor::mostInLine + 1, u'a');
    settle();
    view->takeFocus();
    EXPECT_TRUE(editor().hasFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(state->isWorking);
}

TEST_F(MainViewTest, WithASummaryAnotherModeOrLengthSummarisesAgain)
{
    show();
    makeSummary();
    choose("modes", 1);
    EXPECT_TRUE(state->isWorking);
    waitForCalls(2);
    engine.finish(1, "Another.");
    waitForRuns(0);
    settle();
    moveSlider(Qt::Key_Right);
    EXPECT_TRUE(state->isWorking);
    waitForCalls(3);
}

TEST_F(MainViewTest, TheStateMayChangeModeOrLengthToo)
{
    show();
    makeSummary();
    state->mode = SummaryMode::tldr;
    settle();
    EXPECT_TRUE(state->isWorking);
}

TEST_F(MainViewTest, AnotherLengthUnderTheSameLabelSummarisesAgainToo)
{
    show();
    makeSummary();
    state->length = 1.2;
    settle();
    EXPECT_EQ(text("lengthLabel"), QStringLiteral("Balanced"));
    EXPECT_TRUE(state->isWorking);
}

TEST_F(MainViewTest, TheSummaryIsMadeInTheModeAndLengthThatAreChosen)
{
    show();
    choose("modes", 2);
    moveSlider(Qt::Key_Home);
    state->sourceText = QStringLiteral("A text.");
    settle();
    click("summarize");
    waitForCalls(1);
    const Pithwise::Instruction instruction =
        Pithwise::instruction(SummaryMode::tldr, SummaryLength::brief);
    EXPECT_EQ(engine.calls().front().user, instruction.text + "\n\nText:\nA text.");
    EXPECT_EQ(engine.calls().front().maxTokens, instruction.maxTokens);
}

TEST_F(MainViewTest, WithoutASummaryAnotherModeOrLengthSummarisesNothing)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    choose("modes", 1);
    moveSlider(Qt::Key_Right);
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->token(), nullptr);
}

TEST_F(MainViewTest, WithoutASourceAnotherModeSummarisesNothing)
{
    show();
    state->output = QStringLiteral("A summary.");
    choose("modes", 1);
    moveSlider(Qt::Key_Right);
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
}

TEST_F(MainViewTest, WhileWorkingAnotherModeStartsNothing)
{
    show();
    makeSummary();
    state->summarize();
    state->output = QStringLiteral("So far.");
    const auto token = state->token();
    choose("modes", 1);
    moveSlider(Qt::Key_Right);
    EXPECT_EQ(state->token(), token);
}

TEST_F(MainViewTest, TheSameModeOrLengthAgainStartsNothing)
{
    show();
    makeSummary();
    const auto token = state->token();
    choose("modes", 0);
    state->mode = SummaryMode::bullets;
    state->length = 1.0;
    settle();
    EXPECT_EQ(state->token(), token);
    EXPECT_FALSE(state->isWorking);
}

TEST_F(MainViewTest, ASourceOfSpacesCountsAsOneForAnotherMode)
{
    show();
    state->sourceText = QStringLiteral(" ");
    state->output = QStringLiteral(" ");
    choose("modes", 1);
    EXPECT_EQ(state->errorMessage.get(), QStringLiteral("Nothing to summarize yet."));
}
