#include "MessageView.h"
#include "ViewFixture.h"

#include <QScrollBar>

class OutputPanelTest : public ViewTest
{
protected:
    SummaryView& summary() const { return find<SummaryView>("summary"); }
    MessageView& error() const { return find<MessageView>("error"); }

    QString told() const { return find("announcement").accessibleName(); }

    /// What the frame shows, of which only one thing is shown at a time.
    std::string content() const
    {
        std::string shown;
        for (const char* name : {"error", "progress", "outputPlaceholder", "summary"}) {
            if (isShown(name))
                shown += shown.empty() ? name : std::string(" and ") + name;
        }
        return shown;
    }

    bool areActionsEnabled() const
    {
        const bool isFirst = button("copyMarkdown").isEnabled();
        EXPECT_EQ(button("dailyNote").isEnabled(), isFirst);
        EXPECT_EQ(button("replaceClipboard").isEnabled(), isFirst);
        return isFirst;
    }

    void set(const QString& output, bool isWorking, const QString& status = {})
    {
        state->output = output;
        state->isWorking = isWorking;
        state->status = status;
        settle();
    }
};

TEST_F(OutputPanelTest, TheActionsAreInTheirOrder)
{
    show();
    QStringList texts;
    int right = 0;
    for (const char* name : {"copyMarkdown", "dailyNote", "replaceClipboard"}) {
        texts.push_back(button(name).text());
        EXPECT_EQ(button(name).height(), 20);
        EXPECT_GT(place(button(name)).left(), right);
        right = place(button(name)).right();
    }
    EXPECT_EQ(texts, QStringList({"Copy Markdown", "Daily Note", "Replace Clipboard"}));
}

TEST_F(OutputPanelTest, TheLayoutHasItsSizes)
{
    show();
    const QRect frame = place(find("outputFrame"));
    const QRect actions = place(find("outputActions"));
    const QRect news = place(find("news"));
    EXPECT_EQ(frame.top(), place(find("output")).top());
    EXPECT_EQ(frame.width(), 436);
    EXPECT_EQ(actions.top() - frame.bottom() - 1, 8);
    EXPECT_EQ(news.top() - actions.bottom() - 1, 8);
    EXPECT_EQ(news.bottom(), place(find("output")).bottom());
    state->errorMessage = QStringLiteral("An error.");
    settle();
    EXPECT_EQ(place(error()).adjusted(-12, -12, 12, 12), frame);
}

TEST_F(OutputPanelTest, WithoutASummaryThereIsAPlaceholder)
{
    show();
    EXPECT_EQ(content(), "outputPlaceholder");
    EXPECT_EQ(text("outputPlaceholder"), QStringLiteral("Your summary will appear here."));
    EXPECT_FALSE(areActionsEnabled());
    EXPECT_EQ(text("news"), QStringLiteral(" "));
}

TEST_F(OutputPanelTest, BeforeTheFirstTokenTheStatusIsInTheFrame)
{
    show();
    set({}, true, QStringLiteral("Loading model…"));
    EXPECT_EQ(content(), "progress");
    EXPECT_EQ(text("progressStatus"), QStringLiteral("Loading model…"));
    EXPECT_EQ(text("news"), QStringLiteral(" "));
    EXPECT_FALSE(areActionsEnabled());
}

TEST_F(OutputPanelTest, WhileTheSummaryStreamsTheStatusIsBelow)
{
    show();
    set(QStringLiteral("- **So"), true, QStringLiteral("Summarizing…"));
    EXPECT_EQ(content(), "summary");
    EXPECT_EQ(summary().toPlainText(), QStringLiteral("• **So"));
    EXPECT_EQ(text("news"), QStringLiteral("Summarizing…"));
    EXPECT_FALSE(areActionsEnabled());
    set(QStringLiteral("- **So** far"), true, QStringLiteral("Summarizing…"));
    EXPECT_EQ(summary().toPlainText(), QStringLiteral("• So far"));
}

TEST_F(OutputPanelTest, AFinishedSummaryCanBeUsed)
{
    show();
    set(QStringLiteral("A summary."), false);
    EXPECT_EQ(content(), "summary");
    EXPECT_TRUE(areActionsEnabled());
    EXPECT_EQ(text("news"), QStringLiteral(" "));
}

TEST_F(OutputPanelTest, TheMarkdownIsShown)
{
    show();
    set(QStringLiteral("## Notes\n- [ ] a\n- [x] b\n- [X] c\n* d\n- e\n-f\n**bold\n*g* [h](i)"),
        false);
    EXPECT_EQ(summary().toPlainText(),
              QStringLiteral("## Notes\n☐ a\n☑ b\n• [X] c\n• d\n• e\n-f\n**bold\ng h"));
    EXPECT_TRUE(state->output->startsWith(u"## Notes\n- [ ] a")) << "it stays as it is";
}

TEST_F(OutputPanelTest, AnErrorComesBeforeEverythingElse)
{
    show();
    state->errorMessage = QStringLiteral("<b>It</b> failed.");
    settle();
    EXPECT_EQ(content(), "error");
    EXPECT_EQ(error().toPlainText(), QStringLiteral("<b>It</b> failed."));
    EXPECT_FALSE(areActionsEnabled());
    set({}, true, QStringLiteral("Loading model…"));
    EXPECT_EQ(content(), "error");
    set(QStringLiteral("A summary."), false);
    EXPECT_EQ(content(), "error");
    EXPECT_TRUE(areActionsEnabled()) << "for the summary before";
    state->errorMessage = std::nullopt;
    settle();
    EXPECT_EQ(content(), "summary");
}

TEST_F(OutputPanelTest, AnErrorIsRed)
{
    show();
    state->errorMessage = QStringLiteral("It failed.");
    settle();
    QTextCursor cursor(error().document());
    cursor.setPosition(1);
    EXPECT_EQ(cursor.charFormat().foreground().color(), theme[ColorRole::error]);
    EXPECT_EQ(error().font(), theme.font(TextStyle::body));
}

TEST_F(OutputPanelTest, AnEmptyErrorIsOneToo)
{
    show();
    state->errorMessage = QString();
    settle();
    EXPECT_EQ(content(), "error");
}

TEST_F(OutputPanelTest, AnErrorIsInTheMiddle)
{
    show();
    state->errorMessage = QStringLiteral("It failed.");
    settle();
    EXPECT_EQ(error().viewport()->width(), error().width());
    EXPECT_EQ(error().document()->textWidth(), error().width());
    const QTextCursor cursor(error().document());
    const int middle =
        error().viewport()->mapTo(view.get(), error().cursorRect(cursor).center()).y();
    EXPECT_NEAR(middle, place(find("outputFrame")).center().y(), 4);
}

TEST_F(OutputPanelTest, ALongErrorScrolls)
{
    show();
    const QSize before = find("outputFrame").size();
    state->errorMessage = QString(20'000, u'x');
    settle();
    EXPECT_EQ(find("outputFrame").size(), before);
    EXPECT_GT(error().verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(error().horizontalScrollBar()->maximum(), 0) << "it wraps anywhere";
}

TEST_F(OutputPanelTest, AToastIsShownBelowUntilItEnds)
{
    show();
    set(QStringLiteral("**A** summary."), false);
    click("copyMarkdown");
    EXPECT_EQ(text("news"), QStringLiteral("Markdown copied"));
    EXPECT_EQ(pasteboardCalls, (std::vector<std::string>{"clear", "writeText **A** summary."}));
    advance(std::chrono::seconds(2));
    settle();
    EXPECT_EQ(text("news"), QStringLiteral(" "));
}

TEST_F(OutputPanelTest, AToastComesBeforeTheStatus)
{
    show();
    state->toast = QStringLiteral("Clipboard replaced");
    set(QStringLiteral("So far"), true, QStringLiteral("Summarizing…"));
    EXPECT_EQ(text("news"), QStringLiteral("Clipboard replaced"));
    state->toast = std::nullopt;
    settle();
    EXPECT_EQ(text("news"), QStringLiteral("Summarizing…"));
}

TEST_F(OutputPanelTest, TheNewsKeepTheirHeight)
{
    show();
    const QRect before = place(find("news"));
    state->toast = QStringLiteral("A\nvery ").repeated(100);
    settle();
    EXPECT_EQ(place(find("news")), before);
}

TEST_F(OutputPanelTest, TheClipboardIsReplacedByTheTextWithoutBoldMarks)
{
    show();
    set(QStringLiteral("- **A** *b* ***c** **"), false);
    click("replaceClipboard");
    EXPECT_EQ(pasteboardCalls, (std::vector<std::string>{"clear", "writeText - A *b* *c "}));
    EXPECT_EQ(text("news"), QStringLiteral("Clipboard replaced"));
    EXPECT_EQ(state->output.get(), QStringLiteral("- **A** *b* ***c** **")) << "it stays";
    advance(std::chrono::seconds(2));
    settle();
    EXPECT_EQ(text("news"), QStringLiteral(" "));
}

TEST_F(OutputPanelTest, TheDailyNoteIsWritten)
{
    show();
    set(QStringLiteral("A summary."), false);
    click("dailyNote");
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(text("news"), QStringLiteral("Added to today's note"));
    noteError = "It failed.";
    click("dailyNote");
    EXPECT_EQ(error().toPlainText(), QStringLiteral("Couldn't write the daily note: It failed."));
}

TEST_F(OutputPanelTest, ALinkOpensWhenItIsClicked)
{
    show();
    set(QStringLiteral("[here](https://a.example)"), false);
    QTextCursor cursor(summary().document());
    cursor.setPosition(2);
    QTest::mouseClick(summary().viewport(), Qt::LeftButton, {},
                      summary().cursorRect(cursor).center());
    EXPECT_EQ(opened, std::vector{QUrl("https://a.example")});
}

TEST_F(OutputPanelTest, ANewSummaryBeginsAtItsTop)
{
    show();
    set(QStringLiteral("- line\n").repeated(60), false);
    summary().verticalScrollBar()->setValue(summary().verticalScrollBar()->maximum());
    set({}, true);
    set(QStringLiteral("- other\n").repeated(60), true);
    EXPECT_EQ(summary().verticalScrollBar()->value(), 0);
}

TEST_F(OutputPanelTest, AScreenReaderIsToldTheStatusAndTheFinishedSummary)
{
    show();
    startRun(QStringLiteral("A text."));
    EXPECT_TRUE(waitUntil([&] { return told() == QStringLiteral("Summarizing…"); }));
    engine.update(0, "So");
    waitForOutput(QStringLiteral("So"));
    settle();
    EXPECT_EQ(told(), QStringLiteral("Summarizing…")) << "not before it is finished";
    engine.finish(0, "So **far**");
    waitForRuns(0);
    settle();
    EXPECT_EQ(told(), QStringLiteral("Summary: So far"));
}

TEST_F(OutputPanelTest, AScreenReaderIsToldErrorsAndToasts)
{
    show();
    state->errorMessage = QStringLiteral("It failed.");
    settle();
    EXPECT_EQ(error().accessibleName(), QStringLiteral("It failed."));
    EXPECT_EQ(told(), QStringLiteral("It failed."));
    state->toast = QStringLiteral("Markdown copied");
    settle();
    EXPECT_EQ(told(), QStringLiteral("Markdown copied"));
}

TEST_F(OutputPanelTest, AScreenReaderIsToldOnceAndInAWindowThatIsShown)
{
    state->toast = QStringLiteral("Markdown copied");
    settle();
    EXPECT_FALSE(find("announcement").isVisible());
    show();
    EXPECT_TRUE(find("announcement").isVisible());
    view->hide();
    view->show();
    EXPECT_FALSE(find("announcement").isVisible());
}
