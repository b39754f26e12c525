#include "SummaryView.h"

#include "ControlFixture.h"
#include "LoopbackServer.h"
#include "SummaryText.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolTip>

#include <random>
#include <vector>

TEST(SummaryText, MarksAtTheBeginningsOfLinesAreReplaced)
{
    EXPECT_EQ(SummaryText::withMarks(u"- [x] Ship it"), QStringLiteral("\u2611 Ship it"));
    EXPECT_EQ(SummaryText::withMarks(u"- [ ] Ship it"), QStringLiteral("\u2610 Ship it"));
    EXPECT_EQ(SummaryText::withMarks(u"- [X] Ship it"), QStringLiteral("\u2022 [X] Ship it"));
    EXPECT_EQ(SummaryText::withMarks(u"- item\n* item"),
              QStringLiteral("\u2022 item\n\u2022 item"));
    EXPECT_EQ(SummaryText::withMarks(u"- - a"), QStringLiteral("\u2022 - a"));
}

TEST(SummaryText, OtherLinesStayAsTheyAre)
{
    for (const char* text : {"", "\n", "-item", " - item", "## Notes", "a - b", "- ", "-", "a\r\n"})
        EXPECT_EQ(SummaryText::withMarks(QString::fromUtf8(text)),
                  QString::fromUtf8(text).replace(QRegularExpression(QStringLiteral("^- ")),
                                                  QStringLiteral("\u2022 ")));
}

TEST(SummaryText, ABulletIsNoEmphasis)
{
    const auto runs = InlineMarkdown::parse(SummaryText::withMarks(u"* a\n* *b*"));
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].text, QStringLiteral("\u2022 a\n\u2022 "));
    EXPECT_TRUE(runs[1].italic);
}

class SummaryViewTest : public ControlTest
{
protected:
    /// The document with its formats, in a form that can be compared.
    static std::vector<std::pair<QString, QTextFormat>> fragments(const QTextDocument& document)
    {
        std::vector<std::pair<QString, QTextFormat>> all;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            all.emplace_back(QString(), block.blockFormat());
            for (auto i = block.begin(); !i.atEnd(); ++i)
                all.emplace_back(i.fragment().text(), i.fragment().charFormat());
        }
        return all;
    }

    QTextCharFormat formatAt(int position) const
    {
        QTextCursor cursor(view.document());
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    }

    void select(int from, int to)
    {
        QTextCursor cursor(view.document());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        view.setTextCursor(cursor);
    }

    std::vector<QUrl> opened;
    SummaryView& view = add<SummaryView>([this](const QUrl& url) { opened.push_back(url); });
};

TEST_F(SummaryViewTest, ShowsInlineMarkdown)
{
    view.setMarkdown(u"- **a** *b* `c`\n## d");
    EXPECT_EQ(view.toPlainText(), QStringLiteral("\u2022 a b c\n## d"));
    EXPECT_EQ(formatAt(2).fontWeight(), QFont::Bold);
    EXPECT_TRUE(formatAt(4).fontItalic());
    EXPECT_FALSE(formatAt(6).fontFamilies().toStringList().isEmpty());
    EXPECT_EQ(formatAt(8).foreground().color(), theme[ColorRole::label]);
}

TEST_F(SummaryViewTest, StreamingEndsAsShowingAllAtOnce)
{
    const QString text = QStringLiteral(
        "- **Budget:** *12 %* more [report](https://a.example) `code\n- [ ] \U0001F4EC `\n\n"
        "- [x] b ** c ~ \u05D0\u05D1\n* d *e*\n");
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp)
    for (int round = 0; round < 20; ++round) {
        view.setMarkdown({});
        for (qsizetype end = 0; end < text.size();) {
            end = std::min(text.size(), end + 1 + static_cast<qsizetype>(random() % 5));
            view.setMarkdown(QStringView(text).first(end));
        }
        SummaryView whole(theme, {});
        whole.setMarkdown(text);
        ASSERT_EQ(view.toPlainText(), whole.toPlainText());
        ASSERT_EQ(fragments(*view.document()), fragments(*whole.document()));
    }
}

TEST_F(SummaryViewTest, AnyTextCanReplaceAnyOther)
{
    const std::vector<QString> texts = {
        QString(),
        QStringLiteral("a\nb\nc"),
        QStringLiteral("- a\n- **b**\n- c"),
        QStringLiteral("a\nc"),
        QStringLiteral("\n\n\n"),
        QStringLiteral("**a\nb**\nc"),
        QStringLiteral("aaaaaaa"),
        QStringLiteral("aaa"),
        QStringLiteral("a\r\nb\rc*\r*\nd&#13;\u2029e\uFDD0f\uFFFC"),
        QStringLiteral("a\r\n*b\rc*\r\nd&#13;\u2029e\uFDD0f\uFFFCg"),
    };
    for (const QString& from : texts) {
        for (const QString& to : texts) {
            view.setMarkdown(from);
            view.setMarkdown(to);
            SummaryView whole(theme, {});
            whole.setMarkdown(to);
            EXPECT_EQ(fragments(*view.document()), fragments(*whole.document()))
                << from.toStdString() << " to " << to.toStdString();
        }
    }
}

TEST_F(SummaryViewTest, OnlyWhatChangesIsTouched)
{
    view.setMarkdown(u"- one\n- two **thr");
    QSignalSpy changes(view.document(), &QTextDocument::contentsChange);
    view.setMarkdown(u"- one\n- two **three**");
    ASSERT_EQ(changes.count(), 1);
    EXPECT_GE(changes[0][0].toInt(), 8) << "nothing before the line that changed";
}

TEST_F(SummaryViewTest, TheSelectionStaysWhileTextStreams)
{
    show();
    view.setMarkdown(u"- one two");
    select(2, 9);
    ASSERT_EQ(view.textCursor().selectedText(), QStringLiteral("one two"));
    view.setMarkdown(u"- one two three\n- four");
    EXPECT_EQ(view.textCursor().selectedText(), QStringLiteral("one two"));
    select(9, 2);
    view.setMarkdown(u"- one two three\n- four five");
    EXPECT_EQ(view.textCursor().selectedText(), QStringLiteral("one two"));
    EXPECT_EQ(view.textCursor().position(), 2) << "also its direction";
}

TEST_F(SummaryViewTest, TheViewStaysWhereItIsRead)
{
    show();
    QString text = QStringLiteral("- line\n").repeated(60);
    view.setMarkdown(text);
    QScrollBar& bar = *view.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 100);
    EXPECT_EQ(bar.value(), 0) << "it begins at the top";
    bar.setValue(50);
    text += QStringLiteral("- more\n").repeated(20);
    view.setMarkdown(text);
    EXPECT_EQ(bar.value(), 50);
}

TEST_F(SummaryViewTest, TheViewFollowsTheTextFromItsEnd)
{
    show();
    QString text = QStringLiteral("- line\n").repeated(60);
    view.setMarkdown(text);
    QScrollBar& bar = *view.verticalScrollBar();
    bar.setValue(bar.maximum());
    for (int i = 0; i < 30; ++i) {
        text += QStringLiteral("- more\n");
        view.setMarkdown(text);
        EXPECT_EQ(bar.value(), bar.maximum());
    }
}

TEST_F(SummaryViewTest, ASelectionDoesNotMoveTheView)
{
    show();
    QString text = QStringLiteral("- line\n").repeated(60);
    view.setMarkdown(text);
    QScrollBar& bar = *view.verticalScrollBar();
    select(2, 12);
    bar.setValue(150);
    view.setMarkdown(text + QStringLiteral("- more"));
    EXPECT_EQ(bar.value(), 150);
}

TEST_F(SummaryViewTest, LinksOpenWhenTheyAreClickedAndOnlySafeOnes)
{
    view.setMarkdown(u"[aaaa](https://a.example/b?c) [bbbb](file:///etc/passwd) "
                     u"[cccc](javascript:alert) [dddd](mailto:me@a.example) [eeee](relative)");
    show();
    EXPECT_TRUE(opened.empty());
    for (const int position : {1, 6, 11, 16, 21}) {
        QTextCursor cursor(view.document());
        cursor.setPosition(position + 1);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.cursorRect(cursor).center());
    }
    const std::vector<QUrl> expected = {QUrl(QStringLiteral("https://a.example/b?c")),
                                        QUrl(QStringLiteral("mailto:me@a.example"))};
    EXPECT_EQ(opened, expected);
    EXPECT_TRUE(view.toPlainText().startsWith(u"aaaa")) << "nothing is loaded";
}

TEST_F(SummaryViewTest, OnlyWhatCanBeOpenedLooksLikeALink)
{
    view.setMarkdown(u"[a](https://a.example) [b](file:///etc/passwd) [c](javascript:x) [d](e) "
                     u"[f](data:text/html,x) [g](HTTP://g.example)");
    EXPECT_EQ(view.toPlainText(), QStringLiteral("a b c d f g"));
    for (const int position : {0, 10})
        EXPECT_TRUE(formatAt(position).isAnchor()) << position;
    for (const int position : {2, 4, 6, 8}) {
        EXPECT_FALSE(formatAt(position).isAnchor()) << position;
        EXPECT_FALSE(formatAt(position).fontUnderline()) << position;
    }
}

TEST_F(SummaryViewTest, NoPictureIsEverLoaded)
{
    LoopbackServer server;
    const QString page = server.url("/a.png").toString();
    view.setMarkdown(
        QStringLiteral("![a](%1) <img src=\"%1\"> [![b](%1)](%1)\n![c](file:///c.png)\n"
                       "<link rel='stylesheet' href='%1'><style>@import '%1'</style>")
            .arg(page));
    show();
    view.grab();
    for (QTextBlock block = view.document()->begin(); block.isValid(); block = block.next()) {
        for (auto i = block.begin(); !i.atEnd(); ++i)
            EXPECT_FALSE(i.fragment().charFormat().isImageFormat());
    }
    QTest::mouseMove(view.viewport(), QPoint(20, 20));
    QCoreApplication::processEvents();
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(SummaryViewTest, ALinkUnderTheMouseShowsWhereItLeads)
{
    view.setMarkdown(u"plain [bank.example](https://a@evil.example/ü?q=<b>) plain");
    show();
    QTextCursor cursor(view.document());
    cursor.setPosition(8);
    QTest::mouseMove(view.viewport(), view.cursorRect(cursor).center());
    ASSERT_TRUE(QTest::qWaitFor([] { return QToolTip::isVisible(); }));
    EXPECT_EQ(QToolTip::text(), QStringLiteral("https://a@evil.example/%C3%BC?q=%3Cb%3E"));
    cursor.setPosition(2);
    QTest::mouseMove(view.viewport(), view.cursorRect(cursor).center());
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
}

TEST_F(SummaryViewTest, ALinkThatGetsTheKeyboardShowsWhereItLeads)
{
    view.setMarkdown(u"[aaaa](https://a.example)");
    show();
    view.setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    ASSERT_TRUE(QTest::qWaitFor([] { return QToolTip::isVisible(); }));
    EXPECT_EQ(QToolTip::text(), QStringLiteral("https://a.example"));
}

TEST_F(SummaryViewTest, ALongAddressIsShownFromItsBeginning)
{
    view.setMarkdown(QStringLiteral("[aaaa](https://a.example/%1)").arg(QString(5000, u'x')));
    show();
    QTextCursor cursor(view.document());
    cursor.setPosition(2);
    QTest::mouseMove(view.viewport(), view.cursorRect(cursor).center());
    ASSERT_TRUE(QTest::qWaitFor([] { return QToolTip::isVisible(); }));
    EXPECT_TRUE(QToolTip::text().startsWith(u"https://a.example/xxx"));
    EXPECT_TRUE(QToolTip::text().endsWith(u"…"));
    EXPECT_EQ(QToolTip::text().size(), 120);
}

TEST_F(SummaryViewTest, ALinkOpensWithTheKeyboard)
{
    view.setMarkdown(u"[aaaa](https://a.example)");
    show();
    view.setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(SummaryViewTest, TheTextCannotBeChanged)
{
    view.setMarkdown(u"a");
    show();
    view.setFocus();
    QTest::keyClicks(&view, QStringLiteral("b"));
    press(Qt::Key_Delete);
    EXPECT_EQ(view.toPlainText(), QStringLiteral("a"));
}

TEST_F(SummaryViewTest, TheTextFollowsTheTheme)
{
    view.setMarkdown(u"a **b**");
    theme.setAppearance({true, false, true, {}});
    EXPECT_EQ(view.toPlainText(), QStringLiteral("a b"));
    EXPECT_EQ(formatAt(0).foreground().color(), theme[ColorRole::label]);
    EXPECT_EQ(formatAt(2).fontWeight(), QFont::Bold);
}

TEST_F(SummaryViewTest, HostileTextIsShownLiterally)
{
    view.setMarkdown(u"<script>a</script><img src='file:///a'>\u2029x\u2028y\0z");
    EXPECT_TRUE(view.toPlainText().startsWith(u"<script>a</script><img src='file:///a'>"));
    view.setMarkdown(u"b");
    EXPECT_EQ(view.toPlainText(), QStringLiteral("b"));
}
