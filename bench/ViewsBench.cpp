#include "AppState.h"
#include "ContentView.h"
#include "Figure.h"
#include "InlineMarkdown.h"
#include "ResultRow.h"
#include "SummaryView.h"
#include "TextEditor.h"
#include "Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int summaryTokens = 520;
constexpr qsizetype hostileSize = 50'000; // twenty times the longest summary

QString repeated(QStringView piece, qsizetype size)
{
    return piece.toString().repeated(size / piece.size() + 1).first(size);
}

double parsing(const QString& text)
{
    std::vector<double> times;
    for (int round = 0; round < 5; ++round)
        times.push_back(Figure::seconds([&] { static_cast<void>(InlineMarkdown::parse(text)); }));
    return Figure::median(times);
}

/// Text that would take a careless parser quadratic time or more. Old releases of cmark take it for
/// "![[a](b)" over and over.
void benchHostile()
{
    const std::vector<QString> pieces = {
        QStringLiteral("*"),        QStringLiteral("*a "),      QStringLiteral("a*"),
        QStringLiteral("*a_ "),     QStringLiteral("*a **b "),  QStringLiteral("a**b*c_"),
        QStringLiteral("["),        QStringLiteral("[a]("),     QStringLiteral("]"),
        QStringLiteral("![["),      QStringLiteral("[a](<b"),   QStringLiteral("[a](b \""),
        QStringLiteral("![[a](b)"), QStringLiteral("[a](b 'c"), QStringLiteral("[*a_("),
        QStringLiteral("`"),        QStringLiteral("`a``b"),    QStringLiteral("<"),
        QStringLiteral("<a:"),      QStringLiteral("<a b=\""),  QStringLiteral("<a b='<a\" c='"),
        QStringLiteral("<!--"),     QStringLiteral("<?"),       QStringLiteral("<![CDATA["),
        QStringLiteral("<!a"),      QStringLiteral("&"),        QStringLiteral("&#1"),
        QStringLiteral("\\"),       QStringLiteral("[a](\\("),  QStringLiteral("[a](b()"),
    };
    for (const QString& piece : pieces) {
        const double tenth = parsing(repeated(piece, hostileSize / 10));
        const double whole = parsing(repeated(piece, hostileSize));
        ResultRow::print("inline Markdown, 50 KB of " + piece.toStdString(),
                         Figure::fixed(whole * 1000, 1) + " ms, " +
                             Figure::fixed(whole / tenth, 1) + " x",
                         "< 100 ms", whole < 0.1);
    }
    // Runs of backticks of all lengths, none of which has a partner.
    QString backticks;
    for (qsizetype length = 1; backticks.size() < hostileSize; ++length)
        backticks += QString(length, u'`') + u'a';
    const double time = parsing(backticks);
    ResultRow::print("inline Markdown, 50 KB of growing backticks",
                     Figure::fixed(time * 1000, 1) + " ms", "< 100 ms", time < 0.1);
}

/// A summary as it streams, one token after the other, each of about five characters.
std::vector<QString> stream()
{
    const QString sentence =
        QStringLiteral("- **Budget:** the project gets *twelve* percent more, as the "
                       "[report](https://a.example) and `audit.txt` say.\n");
    std::vector<QString> texts;
    constexpr qsizetype tokenSize = 5;
    const QString whole = sentence.repeated(summaryTokens * tokenSize / sentence.size() + 1);
    for (int token = 1; token <= summaryTokens; ++token)
        texts.push_back(whole.first(token * tokenSize));
    return texts;
}

void benchSummary(const Theme& theme)
{
    SummaryView view(theme, {});
    view.resize(436, 260);
    view.show();
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> times;
    for (const QString& text : stream()) {
        times.push_back(Figure::seconds([&] {
            view.setMarkdown(text);
            view.render(&image);
        }));
    }
    const double longest = 1000 * Figure::percentile(times, 0.99);
    const double usual = 1000 * Figure::median(times);
    ResultRow::print("redraw of a summary that streams to 520 tokens",
                     Figure::fixed(usual, 2) + " and " + Figure::fixed(longest, 2) + " ms",
                     "< 4 ms", longest < 4);
}

/// The times of keys typed at the beginning, in the middle and at the end, each until it is drawn.
std::vector<double> typing(QPlainTextEdit& editor, const std::function<void()>& draw)
{
    std::vector<double> times;
    const int end = editor.document()->characterCount() - 1;
    for (const int place : {0, end / 2, end}) {
        QTextCursor cursor = editor.textCursor();
        cursor.setPosition(place);
        editor.setTextCursor(cursor);
        draw();
        for (int i = 0; i < 50; ++i) {
            times.push_back(Figure::seconds([&] {
                QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
                QApplication::sendEvent(&editor, &key);
                draw();
            }));
        }
    }
    return times;
}

void printTyping(const std::string& what, const std::vector<double>& times)
{
    const double longest = 1000 * Figure::percentile(times, 0.98);
    ResultRow::print(what + ", a key",
                     Figure::fixed(1000 * Figure::median(times), 1) + " and " +
                         Figure::fixed(longest, 1) + " ms",
                     "< 16 ms", longest < 16);
}

/// How long it takes to show `text`, and to type into it where that can be done.
void benchEditor(const Theme& theme, const std::string& what, const QString& text)
{
    TextEditor area(theme);
    area.resize(436, 130);
    area.show();
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    const auto draw = [&] {
        QApplication::processEvents();
        area.render(&image);
    };
    draw();
    const double setting = Figure::seconds([&] {
        area.setText(text);
        draw();
    });
    const std::string name = "editor, " + what;
    ResultRow::print(name + ", shown", Figure::fixed(setting * 1000, 0) + " ms");
    auto& editor = *area.findChild<QPlainTextEdit*>();
    if (!editor.isReadOnly())
        printTyping(name, typing(editor, draw));
}

/// How long a paste takes that makes a line too long to be edited.
void benchLongPaste(const Theme& theme, const QString& text)
{
    TextEditor area(theme);
    area.resize(436, 130);
    area.show();
    QApplication::clipboard()->setText(text);
    const double pasting = Figure::seconds([&] {
        area.findChild<QPlainTextEdit*>()->paste();
        QApplication::processEvents();
    });
    ResultRow::print("editor, 10 MB of one line, pasted", Figure::fixed(pasting * 1000, 0) + " ms",
                     "< 100 ms", pasting < 0.1 && area.text() == text);
}

/// The same with the whole interface around it: the state has the text after every key. When the
/// typing pauses the words are counted, which is a turn of the event loop by itself.
void benchTyping(const Theme& theme, qsizetype kilobytes)
{
    AppState state{AppServices{}};
    ContentView view(state, theme, {});
    view.setModelState(ModelManager::Ready{});
    view.show();
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    const auto draw = [&] {
        QApplication::processEvents();
        view.render(&image);
    };
    const auto& words = *view.findChild<QLabel*>(QStringLiteral("sourceLine"));
    const auto longestTurnUntilCounted = [&] {
        const QString before = words.text();
        double longest = 0;
        while (words.text() == before)
            longest = std::max(longest, Figure::seconds(draw));
        return longest;
    };
    const QString line =
        QStringLiteral("The meeting decided on the budget and its schedule. It has "
                       "told nobody of it.\n");
    state.sourceLabel = QStringLiteral("minutes.txt");
    state.sourceText = line.repeated(kilobytes * 1'000 / line.size());
    draw();
    if (words.text().isEmpty())
        longestTurnUntilCounted();
    auto& editor = *view.findChild<QPlainTextEdit*>();
    const std::string name = "interface, " + std::to_string(kilobytes) + " KB of lines";
    printTyping(name, typing(editor, draw));
    if (kilobytes <= 1'000)
        return; // so little is counted with every key
    std::vector<double> pauses;
    for (int i = 0; i < 9; ++i) {
        editor.insertPlainText(QStringLiteral("two words "));
        pauses.push_back(longestTurnUntilCounted());
    }
    const double pause = 1000 * Figure::median(pauses);
    ResultRow::print(name + ", counted in a pause", Figure::fixed(pause, 1) + " ms", "< 16 ms",
                     pause < 16);
}

} // namespace

/// How long parsing, showing and typing takes.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const Theme theme({false, false, true, {}});
    benchHostile();
    benchSummary(theme);
    for (const qsizetype kilobytes : {1'000, 1'400}) // of which more cannot be edited
        benchTyping(theme, kilobytes);
    const QString prose = QStringLiteral("The meeting decided on the budget and its schedule. ");
    benchEditor(theme, "10 MB of the shortest lines", QStringLiteral("a\n").repeated(5'000'000));
    benchEditor(theme, "as many lines as can be edited",
                QStringLiteral("a\n").repeated(TextEditor::mostLines - 1));
    benchEditor(theme, "10 MB of lines", (prose.repeated(3) + u'\n').repeated(64'000));
    benchEditor(theme, "10 MB of paragraphs", (prose.repeated(40) + u'\n').repeated(4'800));
    // What Qt's layout is slow at: a line is laid out whole.
    benchEditor(theme, "the longest line to edit", repeated(prose, TextEditor::mostInLine));
    benchEditor(theme, "10 MB of one line", prose.repeated(192'000));
    benchLongPaste(theme, prose.repeated(192'000));
    return 0;
}
