#include "Divider.h"
#include "ViewFixture.h"

#include <QAccessible>
#include <QSignalSpy>

#include <map>

class ContentViewTest : public ViewTest
{
protected:
    bool hasLabel(const char* wanted) const
    {
        for (const QLabel* label : view->findChildren<QLabel*>()) {
            if (label->text() == QString::fromUtf8(wanted))
                return label->isVisibleTo(view.get());
        }
        return false;
    }

    /// The object names of what Tab goes through, from where the focus is back to there.
    QStringList tabOrder() const
    {
        QStringList names;
        const QWidget* const first = view->focusWidget();
        do {
            names.push_back(view->focusWidget()->objectName());
            press(Qt::Key_Tab);
        } while (view->focusWidget() != first && names.size() < 40);
        return names;
    }
};

TEST_F(ContentViewTest, HasItsSizeAndItsHeaderAndFooter)
{
    show();
    EXPECT_EQ(view->size(), QSize(460, 640));
    EXPECT_TRUE(hasLabel("Pithwise"));
    EXPECT_TRUE(hasLabel("On-device"));
    EXPECT_TRUE(hasLabel("Hotkey: Ctrl+Alt+S  ·  captures selection or window"));
    EXPECT_EQ(button("quit").text(), QStringLiteral("Quit"));
}

TEST_F(ContentViewTest, TheFooterPromisesTheHotkeyOnlyWhereItWorks)
{
    hasHotkey = false;
    show();
    EXPECT_TRUE(hasLabel("\"pithwise hotkey\" captures selection or window"));
    view->hide();
    hasHotkey = true;
    show();
    EXPECT_TRUE(hasLabel("Hotkey: Ctrl+Alt+S  ·  captures selection or window"));
}

TEST_F(ContentViewTest, TheHeaderAndTheFooterHaveTheirPaddings)
{
    show();
    for (const QLabel* label : view->findChildren<QLabel*>()) {
        if (label->text() == u"On-device") {
            EXPECT_EQ(margins(*label).right(), 14);
            EXPECT_GE(margins(*label).top(), 10);
        } else if (label->text().startsWith(u"Hotkey")) {
            EXPECT_EQ(margins(*label).left(), 14);
            EXPECT_GE(margins(*label).bottom(), 6);
        }
    }
    EXPECT_EQ(margins(button("quit")).right() + 4, 14) << "the text, without its click area";
    EXPECT_EQ(margins(button("quit")).bottom(), 6);
}

TEST_F(ContentViewTest, ItsPartsFollowEachOtherWithoutGaps)
{
    show();
    const auto dividers = view->findChildren<Divider*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(dividers.size(), 2);
    const QRect body = place(*find("main").parentWidget());
    EXPECT_EQ(body.top(), place(*dividers[0]).bottom() + 1);
    EXPECT_EQ(place(*dividers[1]).top(), body.bottom() + 1);
    EXPECT_EQ(place(*dividers[1]).bottom() + 1 + 6, place(button("quit")).top());
    for (const QRect& part : {place(*dividers[0]), body, place(*dividers[1])})
        EXPECT_EQ(part.width(), 460);
}

TEST_F(ContentViewTest, EveryTextHasItsStyleAndItsColour)
{
    state->sourceText = QStringLiteral("a");
    state->sourceLabel = QStringLiteral("b.txt");
    show();
    struct Look
    {
        TextStyle style;
        ColorRole role;
    };
    constexpr Look note{TextStyle::caption, ColorRole::secondary};
    const std::map<QString, Look> looks = {
        {"Pithwise", {TextStyle::headline, ColorRole::label}},
        {"On-device", note},
        {"Hotkey: Ctrl+Alt+S  ·  captures selection or window",
         {TextStyle::smallCaption, ColorRole::secondary}},
        {"Setting up the on-device model", {TextStyle::title, ColorRole::label}},
        {"Drop a PDF, TXT, DOCX, RTF or image here", {TextStyle::callout, ColorRole::label}},
        {"Only the page you enter is downloaded, then reduced to reader-mode text. Summarizing "
         "itself never uses the network.",
         note},
        {"Text is read from the capture with on-device OCR.", note},
        {"Length", note},
        {"Balanced", {TextStyle::boldCaption, ColorRole::label}},
        {"b.txt · 1 words", note},
        {"Your summary will appear here.", {TextStyle::body, ColorRole::tertiary}},
    };
    std::size_t found = 0;
    for (const QLabel* label : view->findChildren<QLabel*>()) {
        const auto look = looks.find(label->text());
        if (look == looks.end())
            continue;
        ++found;
        const std::string what = label->text().toStdString();
        EXPECT_EQ(label->font(), theme.font(look->second.style)) << what;
        EXPECT_EQ(label->palette().color(label->foregroundRole()), theme[look->second.role])
            << what;
    }
    EXPECT_EQ(found, looks.size());
}

TEST_F(ContentViewTest, QuitAsksToQuit)
{
    show();
    click("quit");
    EXPECT_EQ(quits, 1);
}

TEST_F(ContentViewTest, TheBodyFollowsTheModel)
{
    const auto isSetUp = [this](const ModelManager::State& model) {
        view->setModelState(model);
        EXPECT_NE(isShown("setup"), isShown("main"));
        return isShown("main");
    };
    EXPECT_FALSE(isSetUp(ModelManager::Idle{}));
    EXPECT_FALSE(isSetUp(ModelManager::Downloading{0.5}));
    EXPECT_TRUE(isSetUp(ModelManager::Ready{}));
    EXPECT_FALSE(isSetUp(ModelManager::Failed{"It failed."})) << "also back";
    EXPECT_TRUE(isSetUp(ModelManager::Ready{}));
}

TEST_F(ContentViewTest, TheRealManagerIsFollowedAndStarted)
{
    const QString folder = qEnvironmentVariable("HOME");
    ModelManager models({.path = (folder + QStringLiteral("/model.gguf")).toStdString(),
                         .address = QUrl(QStringLiteral("http://127.0.0.1:1/model.gguf")),
                         .stallLimit = std::chrono::seconds(60)});
    view->follow(models);
    show();
    EXPECT_TRUE(isShown("setup"));
    click("startDownload");
    EXPECT_TRUE(waitUntil([&] { return button("startDownload").text() == u"Retry"; }));
    EXPECT_TRUE(isShown("setupError"));
}

TEST_F(ContentViewTest, TheFocusGoesAlongWithTheModel)
{
    view->setModelState(ModelManager::Idle{});
    show();
    view->takeFocus();
    EXPECT_TRUE(button("startDownload").hasFocus());
    view->setModelState(ModelManager::Ready{});
    EXPECT_TRUE(editor().hasFocus());
}

TEST_F(ContentViewTest, TheFocusIsBackAfterADownloadThatWasStartedWithTheKeyboard)
{
    view->setModelState(ModelManager::Failed{"It failed."});
    show();
    ASSERT_TRUE(button("startDownload").hasFocus());
    view->setModelState(ModelManager::Downloading{0});
    EXPECT_FALSE(button("quit").hasFocus());
    view->setModelState(ModelManager::Failed{"It failed again."});
    EXPECT_TRUE(button("startDownload").hasFocus());
    view->setModelState(ModelManager::Downloading{0.5});
    view->setModelState(ModelManager::Ready{});
    EXPECT_TRUE(editor().hasFocus());
}

TEST_F(ContentViewTest, TheFocusStaysInTheFooterWhenTheModelIsReady)
{
    view->setModelState(ModelManager::Downloading{0.5});
    show();
    button("quit").setFocus();
    view->setModelState(ModelManager::Ready{});
    EXPECT_TRUE(button("quit").hasFocus());
}

TEST_F(ContentViewTest, TheFocusBeginsWithTheTabsFirstControl)
{
    show();
    const std::vector<std::pair<Tab, const char*>> expected = {{Tab::clipboard, "editor"},
                                                               {Tab::document, "chooseFile"},
                                                               {Tab::web, "address"},
                                                               {Tab::capture, "captureWindow"}};
    for (const auto& [tab, name] : expected) {
        open(tab);
        view->takeFocus();
        EXPECT_TRUE(find(name).hasFocus()) << name;
    }
}

TEST_F(ContentViewTest, TabGoesThroughEverythingInItsVisualOrder)
{
    state->sourceText = QStringLiteral("a");
    state->output = QStringLiteral("b");
    show();
    view->takeFocus();
    const QStringList after = {"segment0",         "length",       "summarize",
                               "summary",          "copyMarkdown", "dailyNote",
                               "replaceClipboard", "quit",         "segment%1"};
    const auto expected = [&](int tab, QStringList inTab) {
        inTab += after;
        inTab.back() = inTab.back().arg(tab);
        return inTab;
    };
    EXPECT_EQ(tabOrder(), expected(0, {"editor", "useClipboard", "clear"}));
    open(Tab::document);
    view->takeFocus();
    EXPECT_EQ(tabOrder(), expected(1, {"chooseFile"}));
    open(Tab::web);
    state->urlString = QStringLiteral("a");
    settle();
    view->takeFocus();
    EXPECT_EQ(tabOrder(), expected(2, {"address", "fetch"}));
    open(Tab::capture);
    view->takeFocus();
    EXPECT_EQ(tabOrder(), expected(3, {"captureWindow", "captureScreen", "captureRegion"}));
}

TEST_F(ContentViewTest, EveryControlHasAName)
{
    show();
    int controls = 0;
    for (QWidget* widget : view->findChildren<QWidget*>()) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy() ||
            widget->objectName() == u"error" || widget->objectName() == u"setupError")
            continue; // these two are named when there is an error
        const QAccessibleInterface* const accessible =
            QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(accessible);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << widget->objectName().toStdString();
        ++controls;
    }
    EXPECT_GE(controls, 19);
    EXPECT_EQ(find("tabs").accessibleName(), QStringLiteral("Source"));
    EXPECT_EQ(find("modes").accessibleName(), QStringLiteral("Kind of summary"));
}

TEST_F(ContentViewTest, EscapeIsLeftToThePopover)
{
    QWidget popover;
    struct Filter : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            escapes += event->type() == QEvent::KeyPress &&
                       static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
            return false;
        }
        int escapes = 0;
    } filter;
    popover.installEventFilter(&filter);
    view->setParent(&popover);
    popover.show();
    int expected = 0;
    for (const char* name : {"editor", "clear", "segment0", "length", "quit"}) {
        QTest::keyClick(&find(name), Qt::Key_Escape);
        EXPECT_EQ(filter.escapes, ++expected) << name;
    }
    view->setParent(nullptr);
}

TEST_F(ContentViewTest, ManyChangesAreShownOnce)
{
    show();
    state->output = QStringLiteral("first");
    settle();
    QSignalSpy changes(find<SummaryView>("summary").document(), &QTextDocument::contentsChanged);
    for (int i = 0; i < 100; ++i)
        state->output = QString::number(i);
    EXPECT_EQ(changes.count(), 0) << "not before the next turn of the event loop";
    settle();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(find<SummaryView>("summary").toPlainText(), QStringLiteral("99"));
}
