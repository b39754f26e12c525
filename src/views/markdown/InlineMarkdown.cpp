#include "InlineMarkdown.h"

#include "CharacterReference.h"
#include "InlinePieces.h"
#include "MarkdownHtml.h"
#include "MarkdownLink.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace InlineMarkdown {

namespace {

/// The length of the run of one character that begins at `position`.
qsizetype runLength(QStringView text, qsizetype position)
{
    qsizetype end = position + 1;
    while (end < text.size() && text[end] == text[position])
        ++end;
    return end - position;
}

/// Goes once through the text and cuts it into pieces. What a position begins is tried in the order
/// of CommonMark's precedence; what begins nothing stays plain.
class Parser
{
public:
    explicit Parser(QStringView text) : m_text(text), m_html(text) {}

    std::vector<Run> parse();

private:
    struct Bracket
    {
        qsizetype piece;
        qsizetype delimiters; // how many there were before it
        bool isImage;
    };

    /// Adds the text since the last piece as one.
    void endPlain(qsizetype end)
    {
        if (end > m_plain)
            m_pieces.addText(m_text.sliced(m_plain, end - m_plain));
        m_plain = end;
    }

    /// Goes on behind a construct, which has its piece.
    void goTo(qsizetype position) { m_at = m_plain = position; }

    void readNext();
    void readEscape();
    void readCodeSpan();
    std::optional<qsizetype> findBackticks(qsizetype position, qsizetype length);
    void readDelimiters();
    void readOpeningBracket(qsizetype length);
    void readClosingBracket();
    void readAngleBracket();
    void readReference();

    QStringView m_text;
    MarkdownHtml m_html;
    InlinePieces m_pieces;
    qsizetype m_at = 0;
    qsizetype m_plain = 0; // where the text begins that has no piece yet
    std::vector<Bracket> m_brackets;
    /// As many from the bottom begin no link, but maybe an image: a link has no link inside.
    std::size_t m_inactiveBrackets = 0;
    /// Where the last run of so many backticks begins; filled when the first is needed.
    std::unordered_map<qsizetype, qsizetype> m_lastBackticks;
};

std::vector<Run> Parser::parse()
{
    while (m_at < m_text.size())
        readNext();
    endPlain(m_at);
    m_pieces.resolveEmphasis(0);
    return m_pieces.runs();
}

void Parser::readNext()
{
    switch (m_text[m_at].unicode()) {
    case u'\\':
        return readEscape();
    case u'`':
        return readCodeSpan();
    case u'*':
    case u'_':
        return readDelimiters();
    case u'[':
        return readOpeningBracket(1);
    case u'!':
        if (m_text.sliced(m_at).startsWith(u"!["))
            return readOpeningBracket(2);
        break;
    case u']':
        return readClosingBracket();
    case u'<':
        return readAngleBracket();
    case u'&':
        return readReference();
    default:
        break;
    }
    ++m_at;
}

void Parser::readEscape()
{
    const qsizetype next = m_at + 1;
    const bool isLineBreak = next < m_text.size() && m_text[next] == u'\n';
    if (next < m_text.size() && (isLineBreak || MarkdownLink::isEscapable(m_text[next]))) {
        endPlain(m_at);
        m_plain = next; // without the backslash
        m_at = next + 1;
    } else {
        m_at = next;
    }
}

void Parser::readCodeSpan()
{
    const qsizetype length = runLength(m_text, m_at);
    const std::optional<qsizetype> closing = findBackticks(m_at + length, length);
    if (!closing) {
        m_at += length;
        return;
    }
    endPlain(m_at);
    QStringView code = m_text.sliced(m_at + length, *closing - m_at - length);
    const auto isSpace = [](QChar character) { return character == u' ' || character == u'\n'; };
    const bool isPadded = code.size() > 1 && isSpace(code.front()) && isSpace(code.back());
    if (isPadded && !std::all_of(code.begin(), code.end(), isSpace))
        code = code.sliced(1).chopped(1);
    m_pieces.addCode(code);
    goTo(*closing + length);
}

/// The next run of exactly `length` backticks from `position` on. Whether there is one is known
/// before it is looked for, so that the text is not read again for every run that has no partner.
std::optional<qsizetype> Parser::findBackticks(qsizetype position, qsizetype length)
{
    const auto next = [this](qsizetype from) { return m_text.indexOf(u'`', from); };
    if (m_lastBackticks.empty()) {
        for (qsizetype i = next(0); i >= 0;) {
            const qsizetype size = runLength(m_text, i);
            m_lastBackticks[size] = i;
            i = next(i + size);
        }
    }
    const auto last = m_lastBackticks.find(length);
    if (last == m_lastBackticks.end() || last->second < position)
        return std::nullopt;
    qsizetype i = next(position);
    for (qsizetype size = runLength(m_text, i); size != length; size = runLength(m_text, i))
        i = next(i + size);
    return i;
}

void Parser::readDelimiters()
{
    const qsizetype length = runLength(m_text, m_at);
    endPlain(m_at);
    m_pieces.addDelimiters(m_text, m_at, length);
    goTo(m_at + length);
}

void Parser::readOpeningBracket(qsizetype length)
{
    endPlain(m_at);
    const qsizetype piece = m_pieces.addText(m_text.sliced(m_at, length));
    m_brackets.push_back({piece, m_pieces.delimiterCount(), length == 2});
    goTo(m_at + length);
}

void Parser::readClosingBracket()
{
    const qsizetype position = m_at++;
    if (m_brackets.empty())
        return;
    const Bracket bracket = m_brackets.back();
    m_brackets.pop_back();
    const bool isActive = bracket.isImage || m_brackets.size() >= m_inactiveBrackets;
    m_inactiveBrackets = std::min(m_inactiveBrackets, m_brackets.size());
    if (!isActive)
        return;
    const auto target = MarkdownLink::targetAt(m_text, position + 1);
    if (!target)
        return;
    endPlain(position);
    m_pieces.resolveEmphasis(bracket.delimiters);
    m_pieces.addLink(bracket.piece, bracket.isImage ? QString() : target->address);
    if (!bracket.isImage)
        m_inactiveBrackets = m_brackets.size();
    goTo(target->end);
}

void Parser::readAngleBracket()
{
    if (const auto link = MarkdownLink::autolinkAt(m_text, m_at)) {
        endPlain(m_at);
        m_pieces.addAutolink(m_text.sliced(m_at + 1, link->end - m_at - 2), link->address);
        m_inactiveBrackets = m_brackets.size();
        goTo(link->end);
    } else if (const auto end = m_html.endAt(m_at)) {
        m_at = *end;
    } else {
        ++m_at;
    }
}

void Parser::readReference()
{
    const auto reference = CharacterReference::at(m_text, m_at);
    if (!reference) {
        ++m_at;
        return;
    }
    endPlain(m_at);
    m_pieces.addOwned(reference->text);
    goTo(m_at + reference->length);
}

} // namespace

std::vector<Run> parse(QStringView text)
{
    return Parser(text).parse();
}

} // namespace InlineMarkdown
