#include "InlinePieces.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

char32_t characterBefore(QStringView text, qsizetype position)
{
    if (position == 0)
        return U'\n';
    const QChar last = text[position - 1];
    if (last.isLowSurrogate() && position > 1 && text[position - 2].isHighSurrogate())
        return QChar::surrogateToUcs4(text[position - 2], last);
    return last.unicode();
}

char32_t characterAt(QStringView text, qsizetype position)
{
    if (position == text.size())
        return U'\n';
    const QChar first = text[position];
    if (first.isHighSurrogate() && position + 1 < text.size() &&
        text[position + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[position + 1]);
    return first.unicode();
}

bool isSpace(char32_t character)
{
    return character == U'\t' || character == U'\n' || character == U'\f' || character == U'\r' ||
           QChar::category(character) == QChar::Separator_Space;
}

bool isPunctuation(char32_t character)
{
    return QChar::isPunct(character) || QChar::isSymbol(character);
}

bool looksLike(const InlineMarkdown::Run& a, const InlineMarkdown::Run& b)
{
    return a.bold == b.bold && a.italic == b.italic && a.code == b.code && a.link == b.link;
}

} // namespace

qsizetype InlinePieces::add(const Piece& piece)
{
    m_pieces.push_back(piece);
    return static_cast<qsizetype>(m_pieces.size()) - 1;
}

int InlinePieces::addAddress(const QString& address)
{
    if (address.isEmpty())
        return noLink;
    m_addresses.push_back(address);
    return static_cast<int>(m_addresses.size()) - 1;
}

qsizetype InlinePieces::addText(QStringView text)
{
    return add({.text = text, .link = sameLink});
}

void InlinePieces::addCode(QStringView code)
{
    add({.text = code, .link = sameLink, .isCode = true});
}

void InlinePieces::addOwned(const QString& text)
{
    addText(m_owned.emplace_back(text));
}

void InlinePieces::addAutolink(QStringView text, const QString& address)
{
    add({.text = text, .link = addAddress(address)});
    add({.text = {}, .link = noLink});
}

void InlinePieces::addLink(qsizetype first, const QString& address)
{
    const int link = addAddress(address);
    piece(first).text = {};
    piece(first).link = link == noLink ? sameLink : link;
    add({.text = {}, .link = link == noLink ? sameLink : noLink});
}

void InlinePieces::addDelimiters(QStringView text, qsizetype position, qsizetype length)
{
    const char32_t before = characterBefore(text, position);
    const char32_t after = characterAt(text, position + length);
    const bool isLeftFlanking =
        !isSpace(after) && (!isPunctuation(after) || isSpace(before) || isPunctuation(before));
    const bool isRightFlanking =
        !isSpace(before) && (!isPunctuation(before) || isSpace(after) || isPunctuation(after));
    const QChar character = text[position];
    const bool isAsterisk = character == u'*';
    const qsizetype number = delimiterCount();
    m_delimiters.push_back(
        {addText(text.sliced(position, length)), length, character,
         isLeftFlanking && (isAsterisk || !isRightFlanking || isPunctuation(before)),
         isRightFlanking && (isAsterisk || !isLeftFlanking || isPunctuation(after)), number - 1,
         -1});
    if (number > 0)
        delimiter(number - 1).next = number;
}

/// The nearest delimiter before `closer`, and not before `floor`, that it can be paired with, or
/// -1.
qsizetype InlinePieces::findOpener(qsizetype closer, qsizetype floor)
{
    const Delimiter& closing = delimiter(closer);
    for (qsizetype i = closing.previous; i >= floor; i = delimiter(i).previous) {
        const Delimiter& opening = delimiter(i);
        if (opening.character != closing.character || !opening.canOpen)
            continue;
        const bool isAmbiguous = opening.canClose || closing.canOpen;
        const bool areMultiples = opening.length % 3 == 0 && closing.length % 3 == 0;
        if (!isAmbiguous || (opening.length + closing.length) % 3 != 0 || areMultiples)
            return i;
    }
    return -1;
}

/// Takes `number` out of the list.
void InlinePieces::unlink(qsizetype number)
{
    const Delimiter& taken = delimiter(number);
    if (taken.previous >= 0)
        delimiter(taken.previous).next = taken.next;
    if (taken.next >= 0)
        delimiter(taken.next).previous = taken.previous;
}

/// Makes emphasis between the two, of one or two characters of each; those between are text.
void InlinePieces::pair(qsizetype opener, qsizetype closer)
{
    Piece& opening = piece(delimiter(opener).piece);
    Piece& closing = piece(delimiter(closer).piece);
    const bool isStrong = opening.text.size() > 1 && closing.text.size() > 1;
    ++(isStrong ? opening.openedStrong : opening.openedEmphasis);
    ++(isStrong ? closing.closedStrong : closing.closedEmphasis);
    opening.text.chop(isStrong ? 2 : 1);
    closing.text.chop(isStrong ? 2 : 1);
    delimiter(opener).next = closer;
    delimiter(closer).previous = opener;
    if (opening.text.isEmpty())
        unlink(opener);
}

void InlinePieces::resolveEmphasis(qsizetype bottom)
{
    // Where looking for an opener began without finding one, by what decides whether two match: no
    // later closer of the same kind looks there again, which makes all of it linear.
    std::array<qsizetype, 12> floors{};
    floors.fill(bottom);
    for (qsizetype closer = bottom < delimiterCount() ? bottom : -1; closer >= 0;) {
        const Delimiter current = delimiter(closer);
        if (!current.canClose) {
            closer = current.next;
            continue;
        }
        const qsizetype kind =
            current.length % 3 + (current.canOpen ? 3 : 0) + (current.character == u'*' ? 6 : 0);
        qsizetype& floor = floors[static_cast<std::size_t>(kind)];
        const qsizetype opener = findOpener(closer, floor);
        if (opener >= 0) {
            pair(opener, closer);
            if (!piece(current.piece).text.isEmpty())
                continue; // the rest of it may close more
            unlink(closer);
        } else {
            floor = closer;
            if (!current.canOpen)
                unlink(closer);
        }
        closer = current.next;
    }
    m_delimiters.resize(static_cast<std::size_t>(bottom));
    if (bottom > 0)
        delimiter(bottom - 1).next = -1;
}

std::vector<InlineMarkdown::Run> InlinePieces::runs() const
{
    std::vector<InlineMarkdown::Run> runs;
    int emphasis = 0;
    int strong = 0;
    int link = noLink;
    for (const Piece& piece : m_pieces) {
        emphasis -= piece.closedEmphasis;
        strong -= piece.closedStrong;
        if (piece.link != sameLink)
            link = piece.link;
        if (!piece.text.isEmpty()) {
            InlineMarkdown::Run run = {{}, strong > 0, emphasis > 0, piece.isCode, {}};
            if (link != noLink)
                run.link = m_addresses[static_cast<std::size_t>(link)];
            if (runs.empty() || !looksLike(runs.back(), run))
                runs.push_back(std::move(run));
            runs.back().text += piece.text;
        }
        emphasis += piece.openedEmphasis;
        strong += piece.openedStrong;
    }
    return runs;
}
