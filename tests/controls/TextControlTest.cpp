#include "ControlFixture.h"
#include "PushButton.h"
#include "TextEditor.h"
#include "TextField.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>

#include <ctime>
#include <random>

class TextControlTest : public ControlTest
{
protected:
    static QPlainTextEdit& editorOf(TextEditor& area)
    {
        return *area.findChild<QPlainTextEdit*>(QStringLiteral("editor"));
    }

    /// The left and upper edge of what is drawn in this colour, or of what is close to it.
    static QPoint cornerOf(QWidget& widget, const QColor& color)
    {
        const QImage image = widget.grab().toImage();
        QPoint corner(image.width(), image.height());
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor found = image.pixelColor(x, y);
                if (std::abs(found.lightness() - color.lightness()) < 24)
                    corner = QPoint(std::min(corner.x(), x), std::min(corner.y(), y));
            }
        }
        return corner;
    }
};

TEST_F(TextControlTest, ReturnInTheFieldIsAnnounced)
{
    auto& field = add<TextField>();
    QSignalSpy returns(&field, &QLineEdit::returnPressed);
    show();
    EXPECT_EQ(field.height(), 24);
    field.setFocus();
    QTest::keyClicks(&field, QStringLiteral("https://a.example"));
    press(Qt::Key_Return);
    EXPECT_EQ(returns.count(), 1);
    EXPECT_EQ(field.text(), QStringLiteral("https://a.example"));
}

TEST_F(TextControlTest, TheFieldHasRoundCorners)
{
    auto& field = add<TextField>();
    show();
    field.clearFocus();
    EXPECT_EQ(pixel(field, QPoint(0, 0)), theme[ColorRole::window]);
    EXPECT_EQ(pixel(field, QPoint(20, 12)), theme[ColorRole::textBackground]);
}

TEST_F(TextControlTest, TheEditorAnnouncesEveryChange)
{
    auto& area = add<TextEditor>();
    QSignalSpy changes(&area, &TextEditor::textChanged);
    show();
    area.setFocus();
    EXPECT_TRUE(editorOf(area).hasFocus());
    QTest::keyClicks(&editorOf(area), QStringLiteral("a"));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(area.text(), QStringLiteral("a"));
    area.setText(QStringLiteral("b\nc"));
    EXPECT_EQ(changes.count(), 2);
    area.setText(QStringLiteral("b\nc"));
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(area.text(), QStringLiteral("b\nc"));
}

TEST_F(TextControlTest, TheTextThatIsKeptIsTheEditorsAfterAnyEdits)
{
    auto& area = add<TextEditor>();
    QPlainTextEdit& editor = editorOf(area);
    const QStringList pieces = {"a",      "bc\nd",   "\n",         "",
                                "\u00A0", "\u2028e", "\U0001F4EC", "\uFDD0"};
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp)
    const auto below = [&](qsizetype limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    QString shared;
    QString content;
    for (int round = 0; round < 3000; ++round) {
        QTextCursor cursor(editor.document());
        cursor.setPosition(below(editor.document()->characterCount()));
        cursor.setPosition(below(editor.document()->characterCount()), QTextCursor::KeepAnchor);
        const int action = below(40);
        if (action == 0)
            area.setText(pieces[below(pieces.size())].repeated(9));
        else if (action < 6)
            editor.undo();
        else if (action < 9)
            editor.redo();
        else if (action < 11)
            cursor.removeSelectedText();
        else if (action < 13)
            editor.selectAll(), editor.insertPlainText(pieces[below(pieces.size())]);
        else
            cursor.insertText(pieces[below(pieces.size())]);
        ASSERT_EQ(area.text(), editor.toPlainText()) << "in round " << round;
        ASSERT_EQ(shared, content) << "what was given out does not change, in round " << round;
        if (below(3) == 0) {
            shared = area.text();
            content = editor.toPlainText();
        }
    }
}

TEST_F(TextControlTest, ATextWithALineTooLongIsShownInPartAndKeptWhole)
{
    auto& area = add<TextEditor>();
    show();
    auto& note = *area.findChild<QLabel*>(QStringLiteral("editorNote"));
    EXPECT_FALSE(note.isVisible());
    const QString longest = QString(TextEditor::mostInLine, u'a');
    area.setText(longest + u'\n' + longest);
    EXPECT_FALSE(editorOf(area).isReadOnly());
    EXPECT_FALSE(note.isVisible());

    const QString text = QStringLiteral("one\u00A0line\r\n") + longest + QStringLiteral("b\n");
    QSignalSpy changes(&area, &TextEditor::textChanged);
    area.setText(text);
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(area.text(), text) << "with what an editor would replace";
    EXPECT_TRUE(editorOf(area).isReadOnly());
    EXPECT_TRUE(note.isVisible());
    EXPECT_EQ(note.text(),
              QStringLiteral("Too long to edit here: the beginning is shown, the whole text is "
                             "kept."));
    EXPECT_EQ(editorOf(area).accessibleDescription(), note.text());
    EXPECT_TRUE(text.startsWith(QStringLiteral("one")));
    EXPECT_LE(editorOf(area).document()->characterCount(), TextEditor::mostInLine + 1);
    area.setFocus();
    QTest::keyClicks(&editorOf(area), QStringLiteral("x"));
    QTest::keyClick(&editorOf(area), Qt::Key_Z, Qt::ControlModifier);
    editorOf(area).paste();
    EXPECT_EQ(area.text(), text);

    area.setText(QStringLiteral("short"));
    EXPECT_FALSE(editorOf(area).isReadOnly());
    EXPECT_FALSE(note.isVisible());
    EXPECT_EQ(editorOf(area).accessibleDescription(), QString());
    QTest::keyClicks(&editorOf(area), QStringLiteral("x"));
    EXPECT_EQ(area.text(), QStringLiteral("xshort"));
}

TEST_F(TextControlTest, ThePartThatIsShownEndsWithAWholeCharacter)
{
    auto& area = add<TextEditor>();
    const QString text = u'a' + QStringLiteral("\U0001F4EC").repeated(TextEditor::mostInLine);
    area.setText(text);
    EXPECT_EQ(editorOf(area).toPlainText(), text.first(TextEditor::mostInLine - 1));
    EXPECT_EQ(area.text(), text);
}

TEST_F(TextControlTest, TheNoteOfALongLineIsSeenInOneLine)
{
    auto& area = add<TextEditor>();
    window.resize(436 + 18, 130);
    area.setText(QString(TextEditor::mostInLine + 1, u'a'));
    show();
    const auto& note = *area.findChild<QLabel*>(QStringLiteral("editorNote"));
    EXPECT_LE(note.sizeHint().width(), note.width());
    EXPECT_GT(note.y(), editorOf(area).geometry().bottom());
    EXPECT_LT(note.geometry().bottom(), area.height());
}

/// What a text may be made of, over and over.
struct Material
{
    const char* name;
    QString piece;
};

static std::vector<Material> materials()
{
    return {{"short lines", QStringLiteral("a\n")},
            {"empty lines", QStringLiteral("\n")},
            {"carriage returns", QStringLiteral("\r")},
            {"line separators", QStringLiteral("\u2028")},
            {"paragraph separators", QStringLiteral("\u2029")},
            {"frame marks", QStringLiteral("\uFDD0\uFDD1")},
            {"letters", QStringLiteral("a")},
            {"words", QStringLiteral("word ")},
            {"prose", QStringLiteral("The board agreed on it. ").repeated(6) + u'\n'},
            {"spaces", QStringLiteral(" ")},
            {"tabs", QStringLiteral("\t")},
            {"zeros", QString(1, QChar(0))},
            {"nothing to see", QStringLiteral("\u200B")},
            {"letters without gaps", QStringLiteral("WAVE")},
            {"marks on one letter", QStringLiteral("\u0301\u0323")},
            {"scripts", QStringLiteral("a\u0436\u03B1\u3042\uD55C\u0639\u05E9")},
            {"emoji", QStringLiteral("\U0001F4EC")},
            {"halves of characters", QString(1, QChar(0xD800))},
            {"right to left", QStringLiteral("\u05E9\u05DC\u05D5\u05DD a ")},
            {"embeddings", QStringLiteral("\u202B")},
            {"ideographs", QStringLiteral("\u6F22\u5B57")}};
}

TEST_F(TextControlTest, ATextOfMillionsOfCharactersIsShownAtOnceWhateverItIsMadeOf)
{
    show();
    for (const Material& material : materials()) {
        auto& area = add<TextEditor>();
        area.setFixedHeight(90);
        area.show();
        // What comes first tells what it is on, where it is on something.
        const QString text = u'x' + material.piece.repeated(5'000'000 / material.piece.size());
        const std::clock_t begin = std::clock();
        area.setText(text);
        area.grab();
        const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
        // A quick machine takes a tenth of it.
        EXPECT_LT(seconds, 0.5) << material.name;
        EXPECT_LE(editorOf(area).document()->blockCount(), TextEditor::mostLines) << material.name;
        EXPECT_TRUE(editorOf(area).isReadOnly()) << material.name;
        EXPECT_TRUE(area.findChild<QLabel*>(QStringLiteral("editorNote"))->isVisible());
        QTest::keyClicks(&editorOf(area), QStringLiteral("x"));
        editorOf(area).selectAll();
        editorOf(area).cut();
        EXPECT_TRUE(area.text() == text) << material.name;
        delete &area;
    }
}

TEST_F(TextControlTest, ALetterWithMoreMarksThanCanBeToldApartIsShownInPart)
{
    auto& area = add<TextEditor>();
    const QString marks = QStringLiteral("\u0301").repeated(TextEditor::mostMarks);
    area.setText(u'a' + marks + u'b' + marks);
    EXPECT_FALSE(editorOf(area).isReadOnly());
    const QString text = u'a' + marks + QStringLiteral("\u0323b");
    area.setText(text);
    EXPECT_TRUE(editorOf(area).isReadOnly());
    EXPECT_EQ(editorOf(area).toPlainText(), u'a' + marks);
    EXPECT_EQ(area.text(), text);
    // Those that take two code units.
    area.setText(u'a' + QStringLiteral("\U000E0100").repeated(TextEditor::mostMarks + 1));
    EXPECT_TRUE(editorOf(area).isReadOnly());
}

TEST_F(TextControlTest, AsManyLinesAsThereMayBeCanBeEdited)
{
    auto& area = add<TextEditor>();
    const QString lines = QStringLiteral("a\n").repeated(TextEditor::mostLines - 1);
    area.setText(lines);
    EXPECT_FALSE(editorOf(area).isReadOnly());
    area.setText(lines + u'\n');
    EXPECT_TRUE(editorOf(area).isReadOnly());
    EXPECT_EQ(area.text(), lines + u'\n');
    area.setText(QStringLiteral("a\u2028").repeated(TextEditor::mostLines));
    EXPECT_TRUE(editorOf(area).isReadOnly()) << "lines of another kind";
}

TEST_F(TextControlTest, APasteOfTooManyLinesIsTakenWhole)
{
    auto& area = add<TextEditor>();
    area.setText(QStringLiteral("before"));
    editorOf(area).moveCursor(QTextCursor::End);
    const QString pasted = QStringLiteral("a\n").repeated(TextEditor::mostLines);
    QApplication::clipboard()->setText(pasted);
    editorOf(area).paste();
    EXPECT_EQ(area.text(), QStringLiteral("before") + pasted);
    EXPECT_TRUE(editorOf(area).isReadOnly());
}

TEST_F(TextControlTest, APasteThatMakesALineTooLongIsTakenWhole)
{
    auto& area = add<TextEditor>();
    area.setText(QStringLiteral("first\nsecond"));
    QTextCursor cursor = editorOf(area).textCursor();
    cursor.setPosition(2);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    editorOf(area).setTextCursor(cursor);
    const QString pasted = QString(TextEditor::mostInLine - 5, u'p');
    QApplication::clipboard()->setText(pasted);
    QSignalSpy changes(&area, &TextEditor::textChanged);
    editorOf(area).paste();
    EXPECT_EQ(area.text(), QStringLiteral("fi") + pasted + QStringLiteral("cond"));
    EXPECT_TRUE(editorOf(area).isReadOnly());
    EXPECT_GE(changes.count(), 1);
}

TEST_F(TextControlTest, APasteOfLongLinesThatFitIsAPasteLikeAnyOther)
{
    auto& area = add<TextEditor>();
    const QString line = QString(TextEditor::mostInLine - 8, u'p');
    area.setText(QStringLiteral("before"));
    editorOf(area).moveCursor(QTextCursor::End);
    QApplication::clipboard()->setText(u'\n' + line + u'\n');
    editorOf(area).paste();
    EXPECT_EQ(area.text(), QStringLiteral("before\n") + line + u'\n');
    EXPECT_FALSE(editorOf(area).isReadOnly());
    editorOf(area).undo();
    EXPECT_EQ(area.text(), QStringLiteral("before"));
}

TEST_F(TextControlTest, ADropThatMakesALineTooLongIsTakenWhole)
{
    auto& area = add<TextEditor>();
    area.setText(QStringLiteral("a\nb"));
    show();
    QMimeData data;
    data.setText(QString(TextEditor::mostInLine + 1, u'p'));
    QWidget& target = *editorOf(area).viewport();
    const QPoint point(200, 12);
    QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    EXPECT_EQ(area.text(), u'a' + data.text() + QStringLiteral("\nb"));
    EXPECT_TRUE(editorOf(area).isReadOnly());
    area.setText(QStringLiteral("c"));
    EXPECT_EQ(editorOf(area).toPlainText(), QStringLiteral("c"));
    EXPECT_EQ(area.text(), QStringLiteral("c"));
}

TEST_F(TextControlTest, SettingTheSameTextKeepsTheCursor)
{
    auto& area = add<TextEditor>();
    area.setText(QStringLiteral("abc"));
    editorOf(area).moveCursor(QTextCursor::End);
    area.setText(QStringLiteral("abc"));
    EXPECT_EQ(editorOf(area).textCursor().position(), 3);
}

TEST_F(TextControlTest, ReturnBreaksTheLineAndTabLeaves)
{
    auto& area = add<TextEditor>();
    auto& button = add<PushButton>(QStringLiteral("Next"));
    button.setDefault(true);
    QSignalSpy clicks(&button, &QPushButton::clicked);
    show();
    area.setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(area.text(), QStringLiteral("\n"));
    EXPECT_EQ(clicks.count(), 0);
    press(Qt::Key_Tab);
    EXPECT_TRUE(button.hasFocus());
    EXPECT_EQ(area.text(), QStringLiteral("\n"));
}

TEST_F(TextControlTest, ThePlaceholderIsWhereTheTextWillBe)
{
    auto& area = add<TextEditor>();
    area.describe(QStringLiteral("HHHH"));
    show();
    area.clearFocus();
    const QPoint placeholder = cornerOf(area, theme[ColorRole::tertiary]);
    area.setText(QStringLiteral("HHHH"));
    const QPoint text = cornerOf(area, theme[ColorRole::label]);
    EXPECT_NEAR(placeholder.x(), text.x(), 1);
    EXPECT_NEAR(placeholder.y(), text.y(), 1);
    EXPECT_NEAR(text.x(), 11, 1) << "10, and what the letter leaves";
}

TEST_F(TextControlTest, AClickOnThePlaceholderGoesToTheEditor)
{
    auto& area = add<TextEditor>();
    area.describe(QStringLiteral("Paste or type text here…"));
    show();
    window.setFocus();
    QTest::mouseClick(window.childAt(area.mapTo(&window, QPoint(16, 16))), Qt::LeftButton);
    EXPECT_TRUE(editorOf(area).hasFocus());
}

TEST_F(TextControlTest, TheFocusRingLiesAroundTheFrame)
{
    auto& area = add<TextEditor>();
    show();
    area.setFocus();
    EXPECT_EQ(ring->geometry(), area.geometry().adjusted(-2, -2, 2, 2));
}

TEST_F(TextControlTest, TheThumbOfTheScrollBarScrolls)
{
    auto& area = add<TextEditor>();
    area.setText(QStringLiteral("a\n").repeated(200));
    show();
    QScrollBar& bar = *editorOf(area).verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(6, 6));
    EXPECT_TRUE(bar.isSliderDown());
    QTest::mouseMove(&bar, QPoint(6, bar.height() + 10));
    EXPECT_EQ(bar.value(), bar.maximum());
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(6, bar.height() + 10));
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(6, 2));
    EXPECT_LT(bar.value(), bar.maximum()) << "a click above the thumb goes a page up";
}
