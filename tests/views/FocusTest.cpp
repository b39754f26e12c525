#include "ModelSetupView.h"
#include "TextEditor.h"
#include "ViewFixture.h"

#include <QAccessible>

#include <functional>

/// Where the keys go, also while the window is not the active one.
class FocusTest : public ViewTest
{
protected:
    /// Another window takes the keyboard, as after a click elsewhere.
    void leave()
    {
        other.show();
        other.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
        settle();
    }

    void comeBack()
    {
        settle();
        view->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
        settle();
    }

    /// Runs `change` as it happens: in front of the user, behind another window, or hidden.
    void forEveryWay(const std::function<void()>& prepare, const std::function<void()>& change,
                     const char* heir)
    {
        show();
        for (const char* way : {"in front", "behind", "hidden"}) {
            prepare();
            settle();
            if (way != std::string("in front"))
                leave();
            if (way == std::string("hidden"))
                view->hide();
            change();
            settle();
            if (way == std::string("hidden"))
                view->show();
            comeBack();
            EXPECT_EQ(focused(), heir) << way;
        }
    }

    std::string focused() const
    {
        const QWidget* const widget = QApplication::focusWidget();
        if (!widget)
            return "nothing";
        return widget->isEnabled() && widget->isVisible() ? widget->objectName().toStdString()
                                                          : "what is not there";
    }

    QWidget other;
};

TEST_F(FocusTest, ARunHandsTheFocusFromSummarizeToStopAndBack)
{
    forEveryWay(
        [this] {
            state->isWorking = false;
            state->sourceText = QStringLiteral("A text.");
            settle();
            button("summarize").setFocus();
        },
        [this] { state->isWorking = true; }, "stop");
    forEveryWay([this] { state->isWorking = true; }, [this] { state->isWorking = false; },
                "summarize");
}

TEST_F(FocusTest, WhereNothingIsLeftToSummariseItIsInTheEditor)
{
    forEveryWay(
        [this] {
            state->sourceText = QStringLiteral("A text.");
            settle();
            button("summarize").setFocus();
        },
        [this] { state->sourceText = QString(); }, "editor");
}

TEST_F(FocusTest, FetchHandsItToTheField)
{
    state->tab = Tab::web;
    forEveryWay(
        [this] {
            state->urlString = QStringLiteral("a.example");
            settle();
            button("fetch").setFocus();
        },
        [this] { state->urlString = QString(); }, "address");
}

TEST_F(FocusTest, ClearHandsItToTheEditor)
{
    forEveryWay(
        [this] {
            state->sourceText = QStringLiteral("A text.");
            settle();
            button("clear").setFocus();
        },
        [this] { button("clear").click(); }, "editor");
}

TEST_F(FocusTest, ARunTakesItFromTheSummaryAndItsButtonsToStop)
{
    for (const char* name : {"summary", "copyMarkdown", "replaceClipboard"}) {
        forEveryWay(
            [&] {
                state->isWorking = false;
                state->sourceText = QStringLiteral("A text.");
                state->output = QStringLiteral("A summary.");
                settle();
                find(name).setFocus();
            },
            [this] {
                state->isWorking = true;
                state->output = QString();
            },
            "stop");
    }
}

TEST_F(FocusTest, AnErrorThatGoesHandsItOn)
{
    forEveryWay(
        [this] {
            state->errorMessage = QStringLiteral("It failed.");
            settle();
            find("error").setFocus();
        },
        [this] { state->errorMessage = std::nullopt; }, "editor");
}

TEST_F(FocusTest, ATabThatIsOpenedForTheUserTakesItAlong)
{
    const std::vector<std::pair<Tab, const char*>> expected = {
        {Tab::document, "chooseFile"}, {Tab::web, "address"}, {Tab::capture, "captureWindow"}};
    for (const auto& [tab, name] : expected) {
        forEveryWay(
            [this] {
                state->tab = Tab::clipboard;
                settle();
                editor().setFocus();
            },
            [this, tab = tab] { state->tab = tab; }, name);
    }
}

TEST_F(FocusTest, WhereTheTabHasNothingToPressItIsOnStop)
{
    forEveryWay(
        [this] {
            state->isWorking = false;
            state->tab = Tab::clipboard;
            settle();
            editor().setFocus();
        },
        [this] {
            state->tab = Tab::capture;
            state->isWorking = true;
            state->sourceText = QStringLiteral("A text.");
        },
        "stop");
}

TEST_F(FocusTest, ACaptureThatFailedHandsItBack)
{
    state->tab = Tab::capture;
    forEveryWay([this] { state->isWorking = true; }, [this] { state->isWorking = false; },
                "captureWindow");
}

TEST_F(FocusTest, ItIsOnTheDownloadWhileThereIsOne)
{
    view->setModelState(ModelManager::Downloading{0});
    show();
    EXPECT_EQ(focused(), "downloadBar");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "quit") << "where the user goes";
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "downloadBar");
}

TEST_F(FocusTest, TheButtonThatStartsTheDownloadHandsItOver)
{
    for (const char* name : {"startDownload", "setupError"}) {
        forEveryWay(
            [&] {
                view->setModelState(ModelManager::Failed{"It failed."});
                find(name).setFocus();
            },
            [this] { view->setModelState(ModelManager::Downloading{0}); }, "downloadBar");
        forEveryWay([this] { view->setModelState(ModelManager::Downloading{0.5}); },
                    [this] { view->setModelState(ModelManager::Failed{"It failed."}); },
                    "startDownload");
    }
}

TEST_F(FocusTest, ItStaysWhereTheUserHasPutIt)
{
    forEveryWay([this] { find("length").setFocus(); },
                [this] {
                    state->sourceText = QStringLiteral("A text.");
                    state->isWorking = !state->isWorking.get();
                    state->tab = Tab::web;
                },
                "length");
}

TEST_F(FocusTest, AKindThatIsChosenForTheUserTakesItAlong)
{
    show();
    find("tabs").setFocus();
    const QString before = QApplication::focusWidget()->objectName();
    state->tab = Tab::web;
    settle();
    EXPECT_NE(QApplication::focusWidget()->objectName(), before);
    EXPECT_TRUE(static_cast<QAbstractButton*>(QApplication::focusWidget())->isChecked());
}

TEST_F(FocusTest, ReturnPressesTheButtonThatHasTheFocus)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    state->output = QStringLiteral("A summary.");
    settle();
    button("copyMarkdown").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(state->toast.get(), QStringLiteral("Markdown copied"));
    EXPECT_EQ(state->output.get(), QStringLiteral("A summary."));
    button("useClipboard").setFocus();
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_TRUE(waitUntil([&] { return clipboardReads == 1; }));
    button("clear").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(state->sourceText.get(), QString());
    EXPECT_FALSE(state->isWorking);
    button("quit").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(quits, 1);
}

TEST_F(FocusTest, AReturnThatIsHeldDownDoesNotPressWhatComesNext)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    button("summarize").setFocus();
    press(Qt::Key_Return);
    ASSERT_EQ(focused(), "stop");
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QApplication::sendEvent(QApplication::focusWidget(), &again);
    settle();
    EXPECT_TRUE(state->isWorking);
    press(Qt::Key_Return);
    EXPECT_FALSE(state->isWorking);
}

/// The named elements that are shown below `element`, in the order of the tree.
static void collect(QAccessibleInterface* element, std::vector<QAccessibleInterface*>& elements)
{
    for (int i = 0; i < element->childCount(); ++i) {
        QAccessibleInterface* const child = element->child(i);
        if (child->state().invisible || child->role() == QAccessible::Notification)
            continue; // what is told has no place
        const bool isGroup = child->childCount() > 0;
        if (!isGroup && !child->text(QAccessible::Name).isEmpty())
            elements.push_back(child);
        collect(child, elements);
    }
}

TEST_F(FocusTest, ScreenReadersFindEverythingInItsVisualOrder)
{
    state->sourceText = QStringLiteral("A text.");
    state->sourceLabel = QStringLiteral("a.txt");
    state->output = QStringLiteral("A summary.");
    show();
    const auto expectOrder = [this](const std::string& what) {
        settle();
        std::vector<QAccessibleInterface*> elements;
        collect(QAccessible::queryAccessibleInterface(view.get()), elements);
        EXPECT_GE(elements.size(), 6U);
        for (std::size_t i = 1; i < elements.size(); ++i) {
            const QRect before = elements[i - 1]->rect();
            const QRect after = elements[i]->rect();
            const bool isBelow = after.top() > before.bottom();
            const bool isRight = after.left() > before.right() && after.bottom() >= before.top();
            EXPECT_TRUE(isBelow || isRight)
                << what << ": " << elements[i - 1]->text(QAccessible::Name).toStdString()
                << " before " << elements[i]->text(QAccessible::Name).toStdString();
        }
    };
    for (const Tab tab : AppState::allTabs) {
        state->tab = tab;
        expectOrder(std::string(AppState::rawValue(tab)));
    }
    state->errorMessage = QStringLiteral("It failed.");
    expectOrder("an error");
    view->setModelState(ModelManager::Failed{"It failed."});
    expectOrder("a failed setup");
    view->setModelState(ModelManager::Downloading{0.5});
    expectOrder("a download");
}
