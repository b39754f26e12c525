#include "HTMLText.h"
#include "ReplacedPieces.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace HTMLText {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 14> namedReferences = {{
    {"&nbsp;", " "},
    {"&amp;", "&"},
    {"&lt;", "<"},
    {"&gt;", ">"},
    {"&quot;", "\""},
    {"&#39;", "'"},
    {"&apos;", "'"},
    {"&rsquo;", "\u2019"},
    {"&lsquo;", "\u2018"},
    {"&ldquo;", "\u201C"},
    {"&rdquo;", "\u201D"},
    {"&mdash;", "\u2014"},
    {"&ndash;", "\u2013"},
    {"&hellip;", "\u2026"},
}};

/// The text with every reference of the table replaced. One pass gives the same result as replacing
/// one name after the other with "&amp;" last: apart from "&" itself, no replacement has a
/// character that could be a part of another reference.
std::string withNamesDecoded(std::string_view text)
{
    return replacedPieces(text, "&", [](std::string_view rest, std::string& result) {
        for (const auto& [name, character] : namedReferences) {
            if (rest.starts_with(name)) {
                result.append(character);
                return name.size();
            }
        }
        result += '&';
        return std::size_t{1};
    });
}

/// Appends the character whose number `digits` write in base `radix`, or nothing if there is no
/// such character.
void appendCharacter(std::string& result, std::string_view digits, int radix)
{
    std::uint32_t code = 0;
    const char* end = digits.data() + digits.size();
    const auto [parsed, error] = std::from_chars(digits.data(), end, code, radix);
    if (error != std::errc() || parsed != end || code > 0x10FFFF || U_IS_SURROGATE(code))
        return;
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, code);
    result.append(bytes.data(), length);
}

/// The text with every match of "&#(x?)([0-9a-fA-F]+);" replaced. There is no regular expression,
/// because in a text of nothing but references the cost of so many matches would count.
std::string withNumbersDecoded(std::string_view text)
{
    return replacedPieces(text, "&#", [](std::string_view rest, std::string& result) {
        const bool isHexadecimal = rest.substr(2).starts_with('x');
        const std::size_t first = isHexadecimal ? 3 : 2;
        const std::size_t end =
            std::min(rest.find_first_not_of("0123456789abcdefABCDEF", first), rest.size());
        if (end == first || !rest.substr(end).starts_with(';')) {
            result.append(rest.substr(0, end));
            return end;
        }
        appendCharacter(result, rest.substr(first, end - first), isHexadecimal ? 16 : 10);
        return end + 1;
    });
}

} // namespace

std::string decodeEntities(std::string_view text)
{
    return withNumbersDecoded(withNamesDecoded(text));
}

} // namespace HTMLText
