#include "HTMLText.h"

#include "Characters.h"
#include "ReplacedPieces.h"
#include "WhiteSpace.h"

#include <re2/re2.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace HTMLText {

namespace {

constexpr std::size_t fewestLineCharacters = 30;

/// What follows the name of an element in its opening tag: a word boundary and the attributes.
/// RE2's \b knows only ASCII letters. So the boundary is written as a character that cannot
/// continue a word: no letter, mark, decimal digit, connector or format character, and none of the
/// few alphabetic symbols.
constexpr const char* restOfOpeningTag =
    R"((?:[^>\pL\pM\p{Nl}\p{Nd}\p{Pc}\p{Cf})"
    R"(\x{24B6}-\x{24E9}\x{1F130}-\x{1F149}\x{1F150}-\x{1F169}\x{1F170}-\x{1F189}][^>]*)?>)";

/// The Unicode property White_Space; RE2's \s knows ASCII only.
constexpr const char* whiteSpace = R"([\t-\r \x{85}\x{A0}\x{1680}\x{2000}-\x{200A})"
                                   R"(\x{2028}\x{2029}\x{202F}\x{205F}\x{3000}])";

RE2::Options options()
{
    RE2::Options options;
    options.set_case_sensitive(false);
    options.set_dot_nl(true);
    options.set_log_errors(false);
    return options;
}

std::string elementPattern(const std::string& name)
{
    return "<" + name + restOfOpeningTag + ".*?</" + name + ">";
}

using Patterns = std::vector<std::unique_ptr<const RE2>>;

/// Patterns for the elements with these names. Make them only once, since making one takes more
/// than a millisecond.
Patterns elementPatterns(std::initializer_list<const char*> names)
{
    Patterns patterns;
    for (const char* name : names)
        patterns.push_back(std::make_unique<const RE2>(elementPattern(name), options()));
    return patterns;
}

/// The content of `element`, a match that begins with an opening tag and ends with a closing one.
/// As a group of the pattern it would cost several times as much.
std::string_view inner(re2::StringPiece element)
{
    const std::string_view text(element.data(), element.size());
    const std::size_t begin = text.find('>') + 1;
    return text.substr(begin, text.rfind('<') - begin);
}

std::string title(const std::string& html)
{
    static const RE2 pattern("<title[^>]*>.*?</title>", options());
    re2::StringPiece element;
    if (!pattern.Match(html, 0, html.size(), RE2::UNANCHORED, &element, 1))
        return {};
    const std::string decoded = decodeEntities(inner(element));
    return std::string(WhiteSpace::trimmed(decoded));
}

void removeComments(std::string& html)
{
    static const RE2 pattern("<!--.*?-->", options());
    RE2::GlobalReplace(&html, pattern, "");
}

void removeElements(std::string& html)
{
    static const Patterns patterns =
        elementPatterns({"script", "style", "noscript", "svg", "nav", "header", "footer", "aside",
                         "form", "iframe", "button"});
    for (const auto& pattern : patterns)
        RE2::GlobalReplace(&html, *pattern, "");
}

std::optional<std::string_view> largest(std::string_view html, const RE2& pattern)
{
    const re2::StringPiece text(html.data(), html.size());
    std::optional<std::string_view> largest;
    std::size_t largestCount = 0;
    re2::StringPiece element;
    for (std::size_t from = 0;
         pattern.Match(text, from, text.size(), RE2::UNANCHORED, &element, 1);) {
        const std::string_view candidate = inner(element);
        const std::size_t count = Characters::count(candidate);
        if (!largest || count > largestCount) {
            largest = candidate;
            largestCount = count;
        }
        from = static_cast<std::size_t>(element.data() - text.data()) + element.size();
    }
    return largest;
}

std::string_view contentRegion(std::string_view html)
{
    static const Patterns patterns = elementPatterns({"article", "main", "body"});
    for (const auto& pattern : patterns) {
        if (const auto region = largest(html, *pattern))
            return *region;
    }
    return html;
}

void breakLines(std::string& html)
{
    static const RE2 blockEnd("</(?:p|h[1-6]|li|div|tr|blockquote|section)>", options());
    static const RE2 lineBreak(std::string("<br") + whiteSpace + "*/?>", options());
    RE2::GlobalReplace(&html, blockEnd, "\n");
    RE2::GlobalReplace(&html, lineBreak, "\n");
}

/// `title`, an empty line, and then the lines of `text` that are long enough, each trimmed. Shorter
/// lines are menus, bylines and labels of buttons.
std::string paragraphs(std::string title, std::string_view text)
{
    std::string result = std::move(title);
    const std::string_view separator = "\n\n";
    if (!result.empty())
        result.append(separator);
    bool isFirst = true;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = WhiteSpace::trimmedBlanks(text.substr(begin, end - begin));
        begin = end + 1;
        if (Characters::prefix(line, fewestLineCharacters).characters < fewestLineCharacters)
            continue;
        if (!std::exchange(isFirst, false))
            result.append(separator);
        result.append(line);
    }
    return result;
}

} // namespace

std::string readerText(std::string html)
{
    removeComments(html);
    std::string pageTitle = title(html);
    removeElements(html);
    html = std::string(contentRegion(html));
    breakLines(html);
    html = withoutTags(html);
    html = decodeEntities(html);
    return paragraphs(std::move(pageTitle), html);
}

std::optional<std::string_view> largestMatch(std::string_view html, std::string_view tag)
{
    const std::string name = RE2::QuoteMeta(re2::StringPiece(tag.data(), tag.size()));
    return largest(html, RE2(elementPattern(name), options()));
}

std::string withoutTags(std::string_view text)
{
    // Written by hand, because tags are most of the matches in a page, and RE2 takes four times as
    // long to replace a match as to find it.
    return replacedPieces(text, "<", [](std::string_view rest, std::string& result) {
        const std::size_t length = std::min(rest.find('>'), rest.size() - 1) + 1;
        const std::string_view piece = rest.substr(0, length);
        if (piece == "<>" || !piece.ends_with('>'))
            result.append(piece);
        return length;
    });
}

} // namespace HTMLText
