#include "DropZone.h"
#include "TextEditor.h"
#include "ViewFixture.h"

#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

class ClipboardTabTest : public ViewTest
{};

class DocumentTabTest : public ViewTest
{
protected:
    DocumentTabTest() { state->tab = Tab::document; }

    DropZone& zone() const { return find<DropZone>("dropZone"); }

    /// Sends the event of a drag to where the mouse is, as the desktop does: to the window.
    template <typename Event>
    bool drag(const QList<QUrl>& urls, const QPoint& point)
    {
        m_data.setUrls(urls);
        Event event(point, Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::CopyAction);
        event.ignore();
        QApplication::sendEvent(view->windowHandle(), &event);
        return event.isAccepted();
    }

    QFileDialog* chooser() const { return view->findChild<QFileDialog*>("fileChooser"); }

    std::vector<std::filesystem::path> files() const { return documents.arguments(); }
    void waitForFile(const std::filesystem::path& file)
    {
        EXPECT_TRUE(waitUntil([&] { return !files().empty(); }));
        EXPECT_EQ(files(), std::vector{file});
    }

private:
    QMimeData m_data;
};

class WebTabTest : public ViewTest
{
protected:
    WebTabTest() { state->tab = Tab::web; }

    QLineEdit& address() const { return find<QLineEdit>("address"); }
};

class CaptureTabTest : public ViewTest
{
protected:
    CaptureTabTest() { state->tab = Tab::capture; }
};

TEST_F(ClipboardTabTest, HasItsTextsAndSizes)
{
    show();
    EXPECT_EQ(editor().placeholderText(), QStringLiteral("Paste or type text here…"));
    EXPECT_EQ(button("useClipboard").text(), QStringLiteral("Use Clipboard"));
    EXPECT_EQ(button("clear").text(), QStringLiteral("Clear"));
    const QRect frame = place(find("sourceEditor"));
    const QRect use = place(button("useClipboard"));
    EXPECT_EQ(use.top() - frame.bottom() - 1, 6);
    EXPECT_EQ(use.left(), frame.left());
    EXPECT_GT(place(button("clear")).left(), use.right());
    EXPECT_EQ(frame.width(), 436);
    EXPECT_EQ(frame.top(), place(find("tabArea")).top());
    EXPECT_EQ(use.bottom(), place(find("tabArea")).bottom());
}

TEST_F(ClipboardTabTest, TypingSetsTheSourceAtOnce)
{
    show();
    view->takeFocus();
    QTest::keyClicks(&editor(), QStringLiteral("one two"));
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("one two"));
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
}

TEST_F(ClipboardTabTest, TypingKeepsCursorSelectionAndUndo)
{
    show();
    view->takeFocus();
    type(QStringLiteral("one"));
    press(Qt::Key_Home);
    type(QStringLiteral("two"));
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("twoone"));
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(editor().textCursor().selectedText(), QStringLiteral("o"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("one"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state->sourceText.get(), QString());
}

TEST_F(ClipboardTabTest, OtherChangesKeepTheCursorAndTheScrollPosition)
{
    show();
    state->sourceText = QStringLiteral("line\n").repeated(100);
    settle();
    editor().verticalScrollBar()->setValue(40);
    QTextCursor cursor = editor().textCursor();
    cursor.setPosition(7);
    editor().setTextCursor(cursor);
    const int scrolled = editor().verticalScrollBar()->value();
    state->status = QStringLiteral("Something");
    state->sourceText = QStringLiteral("line\n").repeated(100); // another buffer
    settle();
    EXPECT_EQ(editor().textCursor().position(), 7);
    EXPECT_EQ(editor().verticalScrollBar()->value(), scrolled);
}

TEST_F(ClipboardTabTest, WhatIsTypedIsNeverSetAgain)
{
    show();
    view->takeFocus();
    QSignalSpy resets(editor().document(), &QTextDocument::contentsChange);
    type(QStringLiteral("abc"));
    EXPECT_EQ(resets.count(), 3) << "the three keys alone";
}

TEST_F(ClipboardTabTest, TheEditorShowsWhatOthersSet)
{
    show();
    state->setSource("From a file.", QStringLiteral("a.txt"));
    settle();
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("From a file."));
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("a.txt"));
}

TEST_F(ClipboardTabTest, ShowingATextDoesNotChangeIt)
{
    show();
    const QString written = QStringLiteral("a\u2028b\u00A0c\rd\uFDD0");
    state->sourceText = written;
    settle();
    EXPECT_EQ(state->sourceText.get(), written);
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
}

TEST_F(ClipboardTabTest, APastedLineTooLongToEditIsTheWholeSource)
{
    show();
    const QString pasted = QStringLiteral("a ").repeated(TextEditor::mostInLine);
    QApplication::clipboard()->setText(pasted);
    editor().paste();
    settle();
    EXPECT_EQ(state->sourceText.get(), pasted);
    EXPECT_EQ(text("sourceLine"), QStringLiteral("Pasted text · 50000 words"));
    EXPECT_TRUE(isShown("editorNote"));
    EXPECT_TRUE(button("summarize").isEnabled());
    click("clear");
    EXPECT_FALSE(isShown("editorNote"));
    view->takeFocus();
    type(QStringLiteral("b"));
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("b"));
}

TEST_F(ClipboardTabTest, TextOfAnotherTabIsThereWhenTheTabIsShown)
{
    open(Tab::web);
    show();
    state->sourceText = QStringLiteral("From a page.");
    state->sourceLabel = QStringLiteral("a.example");
    settle();
    EXPECT_EQ(editor().toPlainText(), QString()) << "nothing is laid out that is not seen";
    open(Tab::clipboard);
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("From a page."));
}

TEST_F(ClipboardTabTest, TypingIntoAFilesTextKeepsItsLabel)
{
    show();
    state->setSource("From a file.", QStringLiteral("a.txt"));
    settle();
    view->takeFocus();
    type(QStringLiteral("More. "));
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("More. From a file."));
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("a.txt"));
}

TEST_F(ClipboardTabTest, UseClipboardUsesIt)
{
    clipboard = "Copied.";
    show();
    click("useClipboard");
    waitForSource(QStringLiteral("Copied."), QStringLiteral("Clipboard"));
    settle();
    EXPECT_EQ(editor().toPlainText(), QStringLiteral("Copied."));
}

TEST_F(ClipboardTabTest, ClearEmptiesSourceLabelAndOutputInThisOrder)
{
    show();
    state->sourceText = QStringLiteral("text");
    state->sourceLabel = QStringLiteral("label");
    state->output = QStringLiteral("output");
    settle();
    trace.clear();
    QTest::mouseClick(&button("clear"), Qt::LeftButton);
    EXPECT_EQ(trace,
              (std::vector<std::string>{"Clipboard | text (label) | output | idle  | no error",
                                        "Clipboard |  (label) | output | idle  | no error",
                                        "Clipboard |  () | output | idle  | no error"}));
    settle();
    EXPECT_EQ(editor().toPlainText(), QString());
    EXPECT_FALSE(button("clear").isEnabled());
    EXPECT_FALSE(button("summarize").isEnabled());
    EXPECT_EQ(text("sourceLine"), QString());
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"))
        << "the source has changed, and had no label";
}

TEST_F(ClipboardTabTest, WithTheLastCharacterTheActionsEnd)
{
    show();
    view->takeFocus();
    type(QStringLiteral("a"));
    press(Qt::Key_Backspace);
    EXPECT_EQ(state->sourceText.get(), QString());
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
    EXPECT_FALSE(button("summarize").isEnabled());
    EXPECT_FALSE(button("clear").isEnabled());
    EXPECT_EQ(text("sourceLine"), QString());
}

TEST_F(ClipboardTabTest, WhatIsPastedIsTheSource)
{
    show();
    QApplication::clipboard()->setText(QStringLiteral("one\ntwo \U0001F4EC"));
    editor().paste();
    EXPECT_EQ(state->sourceText.get(), QStringLiteral("one\ntwo \U0001F4EC"));
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
    settle();
    EXPECT_EQ(text("sourceLine"), QStringLiteral("Pasted text · 3 words"));
}

TEST_F(ClipboardTabTest, ALabelThatWasTakenAwayIsSetByTheNextKey)
{
    show();
    state->setSource("From a file.", QStringLiteral("a.txt"));
    state->sourceLabel = QString();
    settle();
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
    state->sourceLabel = QString();
    settle();
    EXPECT_EQ(state->sourceLabel.get(), QString()) << "the text has not changed";
    view->takeFocus();
    QTest::keyClicks(&editor(), QStringLiteral("b"));
    EXPECT_EQ(state->sourceLabel.get(), QStringLiteral("Pasted text"));
}

TEST_F(ClipboardTabTest, WhatIsTypedIsWhatIsSummarised)
{
    show();
    view->takeFocus();
    QTest::keyClicks(&editor(), QStringLiteral("typed"));
    state->summarize(); // before the views have taken over anything
    waitForCalls(1);
    EXPECT_TRUE(QByteArray::fromStdString(engine.calls().front().user).endsWith("\ntyped"));
}

TEST_F(ClipboardTabTest, ClearNeverStopsARun)
{
    show();
    startRun(QStringLiteral("A text."));
    settle();
    click("clear");
    EXPECT_TRUE(state->isWorking);
    EXPECT_FALSE(state->token()->isCancelled());
    EXPECT_TRUE(isShown("stop"));
    engine.finish(0, "A summary.");
    waitForOutput(QStringLiteral("A summary."));
}

TEST_F(ClipboardTabTest, ClearedWithTheKeyboardTheFocusIsInTheEditor)
{
    show();
    state->sourceText = QStringLiteral("text");
    settle();
    button("clear").setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(state->sourceText.get(), QString());
    EXPECT_TRUE(editor().hasFocus());
}

TEST_F(DocumentTabTest, HasItsTexts)
{
    show();
    QStringList texts;
    for (const QLabel* label : zone().findChildren<QLabel*>())
        texts.push_back(label->text());
    EXPECT_EQ(texts, QStringList("Drop a PDF, TXT, DOCX, RTF or image here"));
    EXPECT_EQ(button("chooseFile").text(), QStringLiteral("Choose File…"));
    EXPECT_EQ(place(zone()), place(find("tabArea")));
    const QRect line = place(*zone().findChild<QLabel*>());
    const QRect choose = place(button("chooseFile"));
    EXPECT_EQ(choose.top() - line.bottom() - 1, 8);
    EXPECT_NEAR(choose.center().x(), place(zone()).center().x(), 1);
    EXPECT_NEAR(line.center().x(), place(zone()).center().x(), 1);
}

TEST_F(DocumentTabTest, TheFirstOfSeveralDroppedFilesIsLoaded)
{
    show();
    const QPoint middle = place(zone()).center();
    const QList<QUrl> urls = {QUrl("file:///a.txt"), QUrl("file:///b.txt")};
    EXPECT_TRUE(drag<QDragEnterEvent>(urls, middle));
    EXPECT_TRUE(zone().isHighlighted());
    EXPECT_TRUE(drag<QDropEvent>(urls, middle));
    EXPECT_FALSE(zone().isHighlighted());
    EXPECT_FALSE(state->isWorking) << "the drop is answered first";
    settle();
    EXPECT_EQ(state->status.get(), QStringLiteral("Reading a.txt…"));
    waitForFile("/a.txt");
}

TEST_F(DocumentTabTest, ADragThatBeganBeforeTheTabWasShownCanBeDropped)
{
    state->tab = Tab::clipboard;
    show();
    const QList<QUrl> urls = {QUrl("file:///a.txt")};
    const QPoint middle = place(find("tabArea")).center();
    drag<QDragEnterEvent>(urls, middle);
    open(Tab::document);
    EXPECT_TRUE(drag<QDragMoveEvent>(urls, place(zone()).center() + QPoint(1, 40)));
    EXPECT_TRUE(zone().isHighlighted());
    EXPECT_TRUE(drag<QDropEvent>(urls, place(zone()).center() + QPoint(1, 40)));
    settle();
    waitForFile("/a.txt");
}

TEST_F(DocumentTabTest, WhatIsNoFileIsNotAccepted)
{
    show();
    const QPoint middle = place(zone()).center();
    EXPECT_FALSE(drag<QDragEnterEvent>({QUrl("https://a.example")}, middle));
    EXPECT_FALSE(drag<QDragEnterEvent>({}, middle));
    EXPECT_FALSE(zone().isHighlighted());
    drag<QDropEvent>({}, middle);
    settle();
    EXPECT_FALSE(state->isWorking);
}

TEST_F(DocumentTabTest, AFileWithoutAPathIsIgnoredSilently)
{
    show();
    const QPoint middle = place(zone()).center();
    drag<QDragEnterEvent>({QUrl("file:")}, middle);
    drag<QDropEvent>({QUrl("file:")}, middle);
    settle();
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    EXPECT_TRUE(files().empty());
}

TEST_F(DocumentTabTest, TheHighlightEndsWithTheTab)
{
    show();
    drag<QDragEnterEvent>({QUrl("file:///a.txt")}, place(zone()).center());
    EXPECT_TRUE(zone().isHighlighted());
    open(Tab::web);
    open(Tab::document);
    EXPECT_FALSE(zone().isHighlighted());
}

TEST_F(DocumentTabTest, AFileMayHaveAnyName)
{
    show();
    const QList<QUrl> urls = {
        QUrl::fromEncoded("file://thishost/a%20%25%0A%FF%F0%9F%93%AC%23%3F.txt")};
    const QPoint middle = place(zone()).center();
    drag<QDragEnterEvent>(urls, middle);
    drag<QDropEvent>(urls, middle);
    settle();
    waitForFile("/a %\n\xFF\xF0\x9F\x93\xAC#?.txt");
}

TEST_F(DocumentTabTest, TheChosenFileIsLoaded)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.TXT")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    QSignalSpy openings(view.get(), &ContentView::chooserOpened);
    QSignalSpy closings(view.get(), &ContentView::chooserClosed);
    show();
    click("chooseFile");
    ASSERT_TRUE(chooser());
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(closings.count(), 0);
    EXPECT_EQ(chooser()->fileMode(), QFileDialog::ExistingFile) << "one, and no folder";
    EXPECT_TRUE(chooser()->isModal());
    chooser()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(file.fileName());
    QMetaObject::invokeMethod(chooser(), "accept");
    EXPECT_EQ(closings.count(), 1);
    waitForFile(file.fileName().toStdString());
    settle();
    EXPECT_FALSE(chooser());
}

TEST_F(DocumentTabTest, ACancelledChooserChangesNothing)
{
    QSignalSpy closings(view.get(), &ContentView::chooserClosed);
    show();
    click("chooseFile");
    chooser()->reject();
    settle();
    EXPECT_EQ(closings.count(), 1);
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    click("chooseFile");
    EXPECT_TRUE(chooser()) << "and can be opened again";
}

TEST_F(DocumentTabTest, ThereIsOneChooserAtATime)
{
    QSignalSpy openings(view.get(), &ContentView::chooserOpened);
    show();
    button("chooseFile").click();
    button("chooseFile").click();
    EXPECT_EQ(openings.count(), 1);
    EXPECT_EQ(view->findChildren<QFileDialog*>().size(), 1);
}

TEST_F(DocumentTabTest, TheChooserOffersDocumentsAndPicturesOnly)
{
    show();
    click("chooseFile");
    ASSERT_EQ(chooser()->nameFilters().size(), 1);
    const QString filter = chooser()->nameFilters().front();
    for (const char* pattern : {"*.pdf", "*.txt", "*.rtf", "*.png", "*.jpg", "*.docx", "*.md"})
        EXPECT_TRUE(filter.contains(QString::fromUtf8(pattern) + u' ')) << pattern;
    for (const char* pattern : {"*.zip", "*.mp3", "*.exe", "* "})
        EXPECT_FALSE(filter.contains(u' ' + QString::fromUtf8(pattern))) << pattern;
}

TEST_F(WebTabTest, HasItsTextsAndSizes)
{
    show();
    EXPECT_EQ(address().placeholderText(), QStringLiteral("https://example.com/article"));
    const QAccessibleInterface* const fetch =
        QAccessible::queryAccessibleInterface(&button("fetch"));
    EXPECT_EQ(fetch->text(QAccessible::Name), QStringLiteral("Fetch & Summarize"));
    QLabel* note = nullptr;
    for (QLabel* label : view->findChildren<QLabel*>()) {
        if (label->text() ==
            u"Only the page you enter is downloaded, then reduced to reader-mode text. Summarizing "
            u"itself never uses the network.")
            note = label;
    }
    ASSERT_TRUE(note);
    EXPECT_TRUE(note->isVisible());
    EXPECT_EQ(place(button("fetch")).top() - place(address()).bottom() - 1, 8);
    EXPECT_EQ(place(*note).top() - place(button("fetch")).bottom() - 1, 8);
    EXPECT_EQ(place(address()).width(), 436);
    EXPECT_EQ(place(button("fetch")).left(), 12);
}

TEST_F(WebTabTest, TheAddressIsBothWaysTheStates)
{
    show();
    view->takeFocus();
    QTest::keyClicks(&address(), QStringLiteral("a.example"));
    EXPECT_EQ(state->urlString.get(), QStringLiteral("a.example"));
    press(Qt::Key_Home);
    type(QStringLiteral("b"));
    EXPECT_EQ(address().cursorPosition(), 1);
    EXPECT_EQ(state->urlString.get(), QStringLiteral("ba.example"));
    state->urlString = QStringLiteral("c.example");
    settle();
    EXPECT_EQ(address().text(), QStringLiteral("c.example"));
}

TEST_F(WebTabTest, FetchNeedsMoreThanSpacesAndTabs)
{
    show();
    const std::vector<std::pair<QString, bool>> expected = {
        {"", false}, {" ", false},  {" \t \u00A0\u3000", false},
        {"a", true}, {" a ", true}, {"\n", true}};
    for (const auto& [typed, isEnabled] : expected) {
        state->urlString = typed;
        settle();
        EXPECT_EQ(button("fetch").isEnabled(), isEnabled) << typed.toStdString();
    }
}

TEST_F(WebTabTest, FetchFetches)
{
    show();
    state->urlString = QStringLiteral("a.example");
    settle();
    click("fetch");
    EXPECT_EQ(addresses, std::vector<std::string>{"a.example"});
    EXPECT_TRUE(state->isWorking);
    EXPECT_FALSE(button("fetch").isEnabled());
    fail(pages.front(), "It failed.");
    waitForError(QStringLiteral("It failed."));
    settle();
    EXPECT_TRUE(button("fetch").isEnabled());
}

TEST_F(WebTabTest, ReturnFetchesAlsoWhereTheButtonIsDisabled)
{
    show();
    view->takeFocus();
    type(QStringLiteral("  "));
    EXPECT_FALSE(button("fetch").isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(addresses, std::vector<std::string>{"  "});
    press(Qt::Key_Return);
    EXPECT_EQ(addresses.size(), 2u) << "also while working";
}

TEST_F(WebTabTest, ReturnInTheFieldOnlyFetches)
{
    show();
    state->sourceText = QStringLiteral("A text.");
    settle();
    view->takeFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(addresses.size(), 1u);
    EXPECT_EQ(state->token(), nullptr) << "and summarises nothing";
}

TEST_F(WebTabTest, FetchedWithTheKeyboardTheFocusIsInTheField)
{
    show();
    state->urlString = QStringLiteral("a.example");
    settle();
    button("fetch").setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(address().hasFocus());
}

TEST_F(CaptureTabTest, HasItsTextsAndSizes)
{
    show();
    QStringList texts;
    for (const char* name : {"captureWindow", "captureScreen", "captureSelection"})
        texts.push_back(button(name).text());
    EXPECT_EQ(texts, QStringList({"Active Window", "Full Screen", "Select Area"}));
    const QRect first = place(button("captureWindow"));
    const QRect second = place(button("captureScreen"));
    const QRect third = place(button("captureSelection"));
    EXPECT_EQ(second.left() - first.right() - 1, 8);
    EXPECT_EQ(third.left() - second.right() - 1, 8);
    EXPECT_NEAR(first.left() - 12, 448 - third.right() - 1, 1) << "in the middle";
    for (QLabel* label : view->findChildren<QLabel*>()) {
        if (label->text() == u"Text is read from the capture with on-device OCR. Requires Screen "
                             u"Recording permission.") {
            EXPECT_EQ(place(*label).top() - first.bottom() - 1, 10);
            EXPECT_NEAR(first.top() - place(find("tabArea")).top(),
                        place(find("tabArea")).bottom() - place(*label).bottom(), 1);
            return;
        }
    }
    FAIL() << "no note";
}

TEST_F(CaptureTabTest, AfterACaptureTheFocusIsBackOnTheButton)
{
    show();
    button("captureScreen").setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(state->isWorking);
    settle();
    EXPECT_FALSE(button("captureScreen").hasFocus());
    captures.fail(0, "It failed.");
    EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
    settle();
    EXPECT_TRUE(button("captureScreen").hasFocus());
}

TEST_F(CaptureTabTest, AFocusThatTheUserHasMovedStaysThere)
{
    show();
    button("captureScreen").setFocus();
    press(Qt::Key_Space);
    settle();
    find("length").setFocus();
    captures.fail(0, "It failed.");
    EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
    settle();
    EXPECT_TRUE(find("length").hasFocus());
}

TEST_F(CaptureTabTest, EachButtonCaptures)
{
    show();
    const std::vector<std::pair<const char*, ScreenGrab::Kind>> buttons = {
        {"captureWindow", ScreenGrab::Kind::window},
        {"captureScreen", ScreenGrab::Kind::screen},
        {"captureSelection", ScreenGrab::Kind::selection}};
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        click(buttons[i].first);
        EXPECT_TRUE(waitUntil([&] { return captures.arguments().size() == i + 1; }));
        EXPECT_EQ(captures.arguments()[i], buttons[i].second);
        for (const auto& [name, kind] : buttons)
            EXPECT_FALSE(button(name).isEnabled()) << "while working";
        captures.fail(i, "It failed.");
        EXPECT_TRUE(waitUntil([&] { return !state->isWorking; }));
        settle();
        EXPECT_TRUE(button(buttons[i].first).isEnabled());
    }
}
