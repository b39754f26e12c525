#include "CharacterReference.h"

#include <algorithm>
#include <array>
#include <utility>

namespace CharacterReference {

namespace {

constexpr std::array<std::pair<QStringView, char16_t>, 36> names = {{
    {u"amp", u'&'},         {u"lt", u'<'},          {u"gt", u'>'},         {u"quot", u'"'},
    {u"apos", u'\''},       {u"nbsp", u'\u00A0'},   {u"shy", u'\u00AD'},   {u"copy", u'\u00A9'},
    {u"reg", u'\u00AE'},    {u"trade", u'\u2122'},  {u"sect", u'\u00A7'},  {u"para", u'\u00B6'},
    {u"deg", u'\u00B0'},    {u"plusmn", u'\u00B1'}, {u"times", u'\u00D7'}, {u"divide", u'\u00F7'},
    {u"frac12", u'\u00BD'}, {u"middot", u'\u00B7'}, {u"bull", u'\u2022'},  {u"hellip", u'\u2026'},
    {u"ndash", u'\u2013'},  {u"mdash", u'\u2014'},  {u"lsquo", u'\u2018'}, {u"rsquo", u'\u2019'},
    {u"ldquo", u'\u201C'},  {u"rdquo", u'\u201D'},  {u"laquo", u'\u00AB'}, {u"raquo", u'\u00BB'},
    {u"cent", u'\u00A2'},   {u"pound", u'\u00A3'},  {u"yen", u'\u00A5'},   {u"euro", u'\u20AC'},
    {u"larr", u'\u2190'},   {u"rarr", u'\u2192'},   {u"ensp", u'\u2002'},  {u"thinsp", u'\u2009'},
}};

constexpr qsizetype longestName = 6;
constexpr qsizetype mostDecimalDigits = 7;
constexpr qsizetype mostHexDigits = 6;

bool isDigit(QChar character, int radix)
{
    const char16_t lower = character.unicode() | 0x20;
    return (character >= u'0' && character <= u'9') ||
           (radix == 16 && lower >= u'a' && lower <= u'f');
}

/// `body` comes after "&#".
std::optional<Reference> number(QStringView body)
{
    const bool isHex = body.startsWith(u'x') || body.startsWith(u'X');
    const int radix = isHex ? 16 : 10;
    const qsizetype begin = isHex ? 1 : 0;
    qsizetype end = begin;
    while (end < body.size() && end - begin <= mostDecimalDigits && isDigit(body[end], radix))
        ++end;
    const qsizetype digits = end - begin;
    if (digits == 0 || digits > (isHex ? mostHexDigits : mostDecimalDigits) || end == body.size() ||
        body[end] != u';')
        return std::nullopt;
    char32_t character = body.sliced(begin, digits).toUInt(nullptr, radix);
    if (character == 0 || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        character = 0xFFFD;
    return Reference{QString::fromUcs4(&character, 1), 2 + end + 1};
}

} // namespace

std::optional<Reference> at(QStringView text, qsizetype position)
{
    QStringView body = text.sliced(position);
    if (!body.startsWith(u'&'))
        return std::nullopt;
    if (body.startsWith(u"&#"))
        return number(body.sliced(2));
    body = body.sliced(1);
    const qsizetype length = body.first(std::min(body.size(), longestName + 1)).indexOf(u';');
    if (length < 0)
        return std::nullopt;
    const auto* const found =
        std::find_if(names.begin(), names.end(), [name = body.first(length)](const auto& entry) {
            return entry.first == name;
        });
    if (found == names.end())
        return std::nullopt;
    return Reference{QString(QChar(found->second)), length + 2};
}

} // namespace CharacterReference
