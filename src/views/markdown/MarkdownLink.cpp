#include "MarkdownLink.h"

#include "CharacterReference.h"

namespace MarkdownLink {

namespace {

/// Parentheses in an address may nest this deep. It bounds how often a character is looked at,
/// since every "](" that is tried is one of them for those tried before.
constexpr int deepestParentheses = 32;

constexpr qsizetype longestScheme = 32;
constexpr qsizetype longestLabel = 63;

bool isAsciiLetter(QChar character)
{
    const char16_t lower = character.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

bool isAsciiDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isControl(QChar character)
{
    return character < u' ' || character == u'\u007F';
}

bool isEscape(QStringView text, qsizetype position)
{
    return text[position] == u'\\' && position + 1 < text.size() && isEscapable(text[position + 1]);
}

/// `written` without its backslashes, and with what its references stand for.
QString resolved(QStringView written)
{
    QString result;
    result.reserve(written.size());
    for (qsizetype i = 0; i < written.size(); ++i) {
        if (isEscape(written, i)) {
            result += written[++i];
        } else if (const auto reference = CharacterReference::at(written, i)) {
            result += reference->text;
            i += reference->length - 1;
        } else {
            result += written[i];
        }
    }
    return result;
}

/// The position after the white space from `position` on.
qsizetype afterSpace(QStringView text, qsizetype position)
{
    while (position < text.size() && QStringView(u" \t\r\n").contains(text[position]))
        ++position;
    return position;
}

/// The address in angle brackets that begins at `position`.
std::optional<Target> bracketedAddress(QStringView text, qsizetype position)
{
    for (qsizetype i = position + 1; i < text.size(); ++i) {
        if (text[i] == u'>')
            return Target{resolved(text.sliced(position + 1, i - position - 1)), i + 1};
        if (text[i] == u'<' || text[i] == u'\n' || text[i] == u'\r')
            return std::nullopt;
        if (isEscape(text, i))
            ++i;
    }
    return std::nullopt;
}

/// The address without brackets that begins at `position`; it may be empty.
std::optional<Target> bareAddress(QStringView text, qsizetype position)
{
    int depth = 0;
    qsizetype i = position;
    for (; i < text.size() && text[i] != u' ' && !isControl(text[i]); ++i) {
        if (text[i] == u'(' && ++depth > deepestParentheses)
            return std::nullopt;
        if (text[i] == u')' && --depth < 0)
            break;
        if (isEscape(text, i))
            ++i;
    }
    if (depth > 0)
        return std::nullopt;
    return Target{resolved(text.sliced(position, i - position)), i};
}

/// The position after the title that begins at `position`, or nothing where it has no end.
std::optional<qsizetype> endOfTitle(QStringView text, qsizetype position)
{
    const QChar opening = text[position];
    const QChar closing = opening == u'(' ? u')' : opening;
    for (qsizetype i = position + 1; i < text.size(); ++i) {
        if (text[i] == closing)
            return i + 1;
        if (text[i] == u'(' && opening == u'(')
            return std::nullopt;
        if (isEscape(text, i))
            ++i;
    }
    return std::nullopt;
}

bool isTitleStart(QChar character)
{
    return character == u'"' || character == u'\'' || character == u'(';
}

/// The position of the character, after "<", that ends an autolink's text; the end of `text` where
/// nothing does.
qsizetype endOfAutolink(QStringView text, qsizetype position)
{
    while (position < text.size() && !isControl(text[position]) && text[position] != u' ' &&
           text[position] != u'<' && text[position] != u'>')
        ++position;
    return position;
}

bool hasScheme(QStringView address)
{
    const qsizetype colon =
        address.first(std::min(address.size(), longestScheme + 1)).indexOf(u':');
    if (colon < 2 || !isAsciiLetter(address[0]))
        return false;
    for (const QChar character : address.first(colon)) {
        if (!isAsciiLetter(character) && !isAsciiDigit(character) &&
            !QStringView(u"+.-").contains(character))
            return false;
    }
    return true;
}

/// Whether it is a part of a host's name.
bool isHostLabel(QStringView label)
{
    if (label.isEmpty() || label.size() > longestLabel || label.front() == u'-' ||
        label.back() == u'-')
        return false;
    for (const QChar character : label) {
        if (!isAsciiLetter(character) && !isAsciiDigit(character) && character != u'-')
            return false;
    }
    return true;
}

bool isMailAddress(QStringView address)
{
    const qsizetype at = address.indexOf(u'@');
    if (at < 1)
        return false;
    for (const QChar character : address.first(at)) {
        if (!isAsciiLetter(character) && !isAsciiDigit(character) &&
            !QStringView(u".!#$%&'*+/=?^_`{|}~-").contains(character))
            return false;
    }
    for (const QStringView label : address.sliced(at + 1).tokenize(u'.')) {
        if (!isHostLabel(label))
            return false;
    }
    return true;
}

} // namespace

std::optional<Target> targetAt(QStringView text, qsizetype position)
{
    if (position >= text.size() || text[position] != u'(')
        return std::nullopt;
    position = afterSpace(text, position + 1);
    if (position == text.size())
        return std::nullopt;
    std::optional<Target> target =
        text[position] == u'<' ? bracketedAddress(text, position) : bareAddress(text, position);
    if (!target)
        return std::nullopt;
    qsizetype end = afterSpace(text, target->end);
    if (end > target->end && end < text.size() && isTitleStart(text[end])) {
        const std::optional<qsizetype> title = endOfTitle(text, end);
        if (!title)
            return std::nullopt;
        end = afterSpace(text, *title);
    }
    if (end == text.size() || text[end] != u')')
        return std::nullopt;
    target->end = end + 1;
    return target;
}

std::optional<Target> autolinkAt(QStringView text, qsizetype position)
{
    const qsizetype end = endOfAutolink(text, position + 1);
    if (end == text.size() || text[end] != u'>')
        return std::nullopt;
    const QStringView address = text.sliced(position + 1, end - position - 1);
    if (hasScheme(address))
        return Target{address.toString(), end + 1};
    if (isMailAddress(address))
        return Target{QStringLiteral("mailto:") + address.toString(), end + 1};
    return std::nullopt;
}

bool isEscapable(QChar character)
{
    return character > u' ' && character < u'\u007F' && !isAsciiLetter(character) &&
           !isAsciiDigit(character);
}

} // namespace MarkdownLink
