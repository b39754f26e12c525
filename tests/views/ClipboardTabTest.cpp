#include "TextEditor.h"
#include "ViewFixture.h"

#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>

class ClipboardTabTest : public ViewTest
{};

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
    EXPECT_EQ(text("sourceLine"),
              QStringLiteral("Pasted text · %1 words").arg(TextEditor::mostInLine));
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

TEST_F(ClipboardTabTest, ClearEmptiesSourceLabelAndOutput)
{
    show();
    state->sourceText = QStringLiteral("text");
    state->sourceLabel = QStringLiteral("label");
    state->output = QStringLiteral("output");
    settle();
    QTest::mouseClick(&button("clear"), Qt::LeftButton);
    EXPECT_EQ(snapshot(), "Clipboard |  () |  | idle  | no error");
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
