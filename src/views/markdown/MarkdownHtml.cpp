#include "MarkdownHtml.h"

#include <algorithm>

namespace {

/// Of a tag; so a text full of beginnings of tags takes linear time.
constexpr qsizetype mostCharacters = 1000;

struct Section
{
    QStringView begin;
    QStringView end;
};

/// "<!" comes last because others begin with it.
constexpr std::array<Section, 4> sections = {
    {{u"<!--", u"-->"}, {u"<?", u"?>"}, {u"<![CDATA[", u"]]>"}, {u"<!", u">"}}};

bool isLetter(QChar character)
{
    const char16_t lower = character.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// Reads a tag from its beginning to its end; each function tells whether what it names was there.
class TagReader
{
public:
    explicit TagReader(QStringView tag) : m_rest(tag) {}

    qsizetype left() const { return m_rest.size(); }

    bool readCharacter(QChar character)
    {
        if (!m_rest.startsWith(character))
            return false;
        m_rest = m_rest.sliced(1);
        return true;
    }

    bool readSpace()
    {
        return readWhile([](QChar c) { return QStringView(u" \t\r\n").contains(c); });
    }

    bool readTagName()
    {
        return !m_rest.isEmpty() && isLetter(m_rest.front()) &&
               readWhile([](QChar c) { return isLetter(c) || isDigit(c) || c == u'-'; });
    }

    /// With its value, if it has one; false as well where the value is wrong.
    bool readAttribute()
    {
        if (m_rest.isEmpty() || isDigit(m_rest.front()) ||
            QStringView(u".-").contains(m_rest.front()) || !readWhile(isInAttributeName))
            return false;
        const QStringView afterName = m_rest;
        readSpace();
        if (readCharacter(u'=')) {
            readSpace();
            return readValue();
        }
        m_rest = afterName; // the space belongs to what comes next
        return true;
    }

private:
    static bool isInAttributeName(QChar character)
    {
        return isLetter(character) || isDigit(character) ||
               QStringView(u"_:.-").contains(character);
    }

    template <typename Predicate>
    bool readWhile(Predicate predicate)
    {
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), predicate);
        const bool isAny = end != m_rest.begin();
        m_rest = m_rest.sliced(end - m_rest.begin());
        return isAny;
    }

    bool readValue()
    {
        for (const QChar quote : {u'"', u'\''}) {
            if (!readCharacter(quote))
                continue;
            readWhile([quote](QChar c) { return c != quote; });
            return readCharacter(quote);
        }
        return readWhile([](QChar c) { return !QStringView(u" \t\r\n\"'=<>`").contains(c); });
    }

    QStringView m_rest;
};

} // namespace

std::optional<qsizetype> MarkdownHtml::endAt(qsizetype position)
{
    const std::optional<qsizetype> end = endOfTag(position);
    return end ? end : endOfSection(position);
}

std::optional<qsizetype> MarkdownHtml::endOfTag(qsizetype position) const
{
    const qsizetype limit = std::min(m_text.size(), position + mostCharacters);
    TagReader tag(m_text.sliced(position, limit - position));
    tag.readCharacter(u'<');
    const bool isClosing = tag.readCharacter(u'/');
    if (!tag.readTagName())
        return std::nullopt;
    while (tag.readSpace() && !isClosing) {
        if (!tag.readAttribute())
            break;
    }
    if (!isClosing)
        tag.readCharacter(u'/');
    if (!tag.readCharacter(u'>'))
        return std::nullopt;
    return limit - tag.left();
}

std::optional<qsizetype> MarkdownHtml::endOfSection(qsizetype position)
{
    const QStringView rest = m_text.sliced(position);
    for (const QStringView comment : {u"<!-->", u"<!--->"}) {
        if (rest.startsWith(comment))
            return position + comment.size();
    }
    for (std::size_t kind = 0; kind < sections.size(); ++kind) {
        const Section& section = sections[kind];
        if (!rest.startsWith(section.begin))
            continue;
        const qsizetype inside = position + section.begin.size();
        const bool isDeclaration = section.begin == u"<!";
        if (isDeclaration && (inside == m_text.size() || !isLetter(m_text[inside])))
            return std::nullopt;
        if (m_hasNoMoreEnds[kind])
            return std::nullopt;
        const qsizetype end = m_text.indexOf(section.end, inside);
        m_hasNoMoreEnds[kind] = end < 0;
        if (end < 0)
            return std::nullopt;
        return end + section.end.size();
    }
    return std::nullopt;
}
