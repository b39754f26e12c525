#include "SummaryView.h"

#include "Drawing.h"
#include "ScrollBar.h"
#include "SummaryText.h"

#include <QFontDatabase>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace {

using Runs = std::vector<InlineMarkdown::Run>;

constexpr int padding = 12;
constexpr int lineHeight = 130; // percent
constexpr qreal codeGround = 0.07;
constexpr int longestAddress = 120; // characters shown of it; they fit every screen

qsizetype length(const Runs& runs)
{
    qsizetype sum = 0;
    for (const InlineMarkdown::Run& run : runs)
        sum += run.text.size();
    return sum;
}

/// How many characters at the beginnings of both are the same and look the same.
qsizetype commonBeginning(const Runs& a, const Runs& b)
{
    qsizetype common = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        if (!a[i].looksLike(b[i]))
            return common;
        const QString& x = a[i].text;
        const QString& y = b[i].text;
        const auto [end, other] = std::mismatch(x.begin(), x.end(), y.begin(), y.end());
        common += end - x.begin();
        if (end != x.end() || other != y.end())
            return common;
    }
    return common;
}

/// How many characters at the ends of both are the same and look the same, but at most `most`.
qsizetype commonEnd(const Runs& a, const Runs& b, qsizetype most)
{
    qsizetype common = 0;
    for (auto i = a.rbegin(), j = b.rbegin(); i != a.rend() && j != b.rend(); ++i, ++j) {
        if (!i->looksLike(*j))
            break;
        const auto [end, other] =
            std::mismatch(i->text.rbegin(), i->text.rend(), j->text.rbegin(), j->text.rend());
        common += end - i->text.rbegin();
        if (end != i->text.rend() || other != j->text.rend())
            break;
    }
    return std::min(common, most);
}

/// What is shown for `markdown`. Each of its characters is one character of the document: Qt would
/// make one line break of "\r\n", and it uses two other characters as marks of its own.
Runs shownRuns(QStringView markdown)
{
    const QString text = markdown.toString().replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    Runs runs = InlineMarkdown::parse(SummaryText::withMarks(text));
    for (InlineMarkdown::Run& run : runs) {
        for (QChar& character : run.text) {
            if (character == u'\r' || character == u'\uFDD0' || character == u'\uFDD1')
                character = u' ';
        }
    }
    return runs;
}

/// Whether the link can be opened.
bool isOpened(const QUrl& link)
{
    const QString scheme = link.scheme();
    return scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

/// The address of `link` in its encoded form, in which no letter can pass for another. Its
/// beginning is shown, because that says whose address it is.
QString shownAddress(const QUrl& link)
{
    QString address = QString::fromLatin1(link.toEncoded());
    if (address.size() > longestAddress)
        address = address.first(longestAddress - 1) + u'…';
    return address;
}

} // namespace

SummaryView::SummaryView(const Theme& theme, OpenLink openLink, QWidget* parent)
    : Themed(theme, parent), m_openLink(std::move(openLink))
{
    setFrameShape(QFrame::NoFrame);
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    setVerticalScrollBar(new ScrollBar(theme));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(padding);
    connect(this, &QTextBrowser::anchorClicked, this, &SummaryView::open);
    connect(this, &QTextBrowser::highlighted, this,
            [this](const QUrl& link) { showTarget(link, QCursor::pos()); });
    setTextStyle(TextStyle::body);
    followTheme();
}

/// Shows everything again in the theme's colours and font.
void SummaryView::followTheme()
{
    Themed::followTheme();
    const Runs runs = std::exchange(m_runs, {});
    document()->clear();
    replaceChanged(runs);
}

void SummaryView::setMarkdown(QStringView markdown)
{
    const Runs runs = shownRuns(markdown);
    if (runs == m_runs)
        return;
    QScrollBar& bar = *verticalScrollBar();
    const int place = bar.value();
    const bool isAtEnd = place == bar.maximum();
    const QTextCursor selection = textCursor();
    const int anchor = selection.anchor();
    const int position = selection.position();

    replaceChanged(runs);

    // Without this, a selection that reaches to the end would grow with the text.
    if (textCursor().anchor() != anchor || textCursor().position() != position) {
        const int end = static_cast<int>(length(runs));
        QTextCursor kept = textCursor();
        kept.setPosition(std::min(anchor, end));
        kept.setPosition(std::min(position, end), QTextCursor::KeepAnchor);
        setTextCursor(kept);
    }
    bar.setValue(isAtEnd && place > 0 ? bar.maximum() : place);
}

void SummaryView::replaceChanged(const Runs& runs)
{
    const qsizetype before = length(m_runs);
    const qsizetype after = length(runs);
    const qsizetype begin = commonBeginning(m_runs, runs);
    const qsizetype end = commonEnd(m_runs, runs, std::min(before, after) - begin);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.setPosition(static_cast<int>(begin));
    cursor.setPosition(static_cast<int>(before - end), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    insert(cursor, runs, begin, after - end);
    indentMarks(static_cast<int>(begin), static_cast<int>(after - end));
    cursor.endEditBlock();
    m_runs = runs;
}

/// Inserts the characters of `runs` from `from` up to `to`.
void SummaryView::insert(QTextCursor& cursor, const Runs& runs, qsizetype from, qsizetype to) const
{
    qsizetype position = 0;
    for (const InlineMarkdown::Run& run : runs) {
        const qsizetype begin = std::max(from - position, qsizetype{0});
        const qsizetype end = std::min(to - position, run.text.size());
        if (begin < end)
            cursor.insertText(run.text.sliced(begin, end - begin), format(run));
        position += run.text.size();
    }
}

/// In the blocks from `from` to `to`, indents the lines below a mark so that they begin beside it.
void SummaryView::indentMarks(int from, int to) const
{
    const QFontMetricsF metrics(font());
    for (QTextBlock block = document()->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        const QString text = block.text();
        const qreal indent =
            SummaryText::hasMark(text) ? metrics.horizontalAdvance(text.first(2)) : 0;
        QTextBlockFormat wanted = block.blockFormat();
        wanted.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
        wanted.setLeftMargin(indent);
        wanted.setTextIndent(-indent);
        if (wanted != block.blockFormat())
            QTextCursor(block).setBlockFormat(wanted);
    }
}

QTextCharFormat SummaryView::format(const InlineMarkdown::Run& run) const
{
    QTextCharFormat format;
    format.setForeground(m_theme[ColorRole::label]);
    if (run.bold)
        format.setFontWeight(QFont::Bold);
    format.setFontItalic(run.italic);
    if (run.code) {
        format.setFontFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
        format.setBackground(Drawing::faded(m_theme[ColorRole::label], codeGround));
    }
    if (isOpened(QUrl(run.link))) {
        format.setAnchor(true);
        format.setAnchorHref(run.link);
        format.setForeground(m_theme[ColorRole::accentText]);
        format.setFontUnderline(true);
    }
    return format;
}

void SummaryView::open(const QUrl& link) const
{
    if (isOpened(link))
        m_openLink(link);
}

/// Moves to the next link inside the text too, and shows where it leads.
bool SummaryView::focusNextPrevChild(bool next)
{
    const bool isInside = QTextBrowser::focusNextPrevChild(next);
    if (isInside)
        showTarget(QUrl(textCursor().charFormat().anchorHref()),
                   viewport()->mapToGlobal(cursorRect().bottomLeft()));
    return isInside;
}

/// Shows the address of `link`; for an empty link, hides the address that was shown before.
void SummaryView::showTarget(const QUrl& link, const QPoint& place)
{
    if (link.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(place, shownAddress(link), viewport());
}
