#include "ReaderTextBySteps.h"

#include <unicode/brkiter.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ReaderTextBySteps {

namespace {

using icu::UnicodeString;

constexpr std::uint32_t usualFlags = UREGEX_CASE_INSENSITIVE | UREGEX_DOTALL;

UnicodeString fromUtf8(const std::string& text)
{
    return UnicodeString::fromUTF8(text);
}

std::string toUtf8(const UnicodeString& text)
{
    std::string result;
    return text.toUTF8String(result);
}

void require(UErrorCode status)
{
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
}

std::unique_ptr<icu::RegexMatcher> matcher(const std::string& pattern, const UnicodeString& text,
                                           std::uint32_t flags = usualFlags)
{
    UErrorCode status = U_ZERO_ERROR;
    auto matcher = std::make_unique<icu::RegexMatcher>(fromUtf8(pattern), text, flags, status);
    require(status);
    return matcher;
}

UnicodeString replaced(const UnicodeString& text, const std::string& pattern, const char* with)
{
    UErrorCode status = U_ZERO_ERROR;
    UnicodeString result = matcher(pattern, text)->replaceAll(UnicodeString(with), status);
    require(status);
    return result;
}

std::vector<UnicodeString> groups(const UnicodeString& text, const std::string& pattern)
{
    std::vector<UnicodeString> found;
    const auto matches = matcher(pattern, text);
    UErrorCode status = U_ZERO_ERROR;
    while (matches->find(status)) {
        found.push_back(matches->group(1, status));
        require(status);
    }
    require(status);
    return found;
}

int characters(const UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    require(status);
    iterator->setText(text);
    int count = 0;
    while (iterator->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

UnicodeString trimmed(const UnicodeString& text, const std::string& set)
{
    return replaced(replaced(text, "^" + set + "+", ""), set + "+$(?![\\n\\r])", "");
}

std::optional<UnicodeString> largest(const UnicodeString& html, const std::string& tag)
{
    std::optional<UnicodeString> best;
    for (const UnicodeString& group : groups(html, "<" + tag + "\\b[^>]*>(.*?)</" + tag + ">")) {
        if (!best || characters(group) > characters(*best))
            best = group;
    }
    return best;
}

UnicodeString number(const UnicodeString& digits, bool isHexadecimal)
{
    std::uint64_t code = 0;
    for (int i = 0; i < digits.length(); ++i) {
        const int digit = u_digit(digits.charAt(i), isHexadecimal ? 16 : 10);
        if (digit < 0)
            return {};
        code = code * (isHexadecimal ? 16 : 10) + static_cast<std::uint64_t>(digit);
        if (code > 0xFFFFFFFF)
            return {};
    }
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {};
    return UnicodeString(static_cast<UChar32>(code));
}

UnicodeString decoded(UnicodeString text)
{
    for (const auto& [name, character] :
         std::initializer_list<std::pair<const char*, const char*>>{{"&nbsp;", " "},
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
                                                                    {"&amp;", "&"}})
        text.findAndReplace(fromUtf8(name), fromUtf8(character));
    UnicodeString result;
    int end = 0;
    const auto matches = matcher("&#(x?)([0-9a-fA-F]+);", text, 0);
    UErrorCode status = U_ZERO_ERROR;
    while (matches->find(status)) {
        result.append(text, end, matches->start(status) - end);
        result.append(number(matches->group(2, status), !matches->group(1, status).isEmpty()));
        end = matches->end(status);
    }
    require(status);
    return result.append(text, end, text.length() - end);
}

UnicodeString withoutNoise(UnicodeString html)
{
    for (const char* name : {"script", "style", "noscript", "svg", "nav", "header", "footer",
                             "aside", "form", "iframe", "button"})
        html = replaced(html, "<" + std::string(name) + "\\b[^>]*>.*?</" + name + ">", "");
    for (const char* tag : {"article", "main", "body"}) {
        if (const auto region = largest(html, tag))
            return *region;
    }
    return html;
}

} // namespace

std::string readerText(const std::string& html)
{
    UnicodeString text = replaced(fromUtf8(html), "<!--.*?-->", "");
    const auto titles = groups(text, "<title[^>]*>(.*?)</title>");
    UnicodeString result =
        titles.empty() ? UnicodeString() : trimmed(decoded(titles.front()), "\\p{White_Space}");
    if (!result.isEmpty())
        result.append("\n\n");
    bool isFirst = true;
    text = withoutNoise(text);
    text = replaced(text, "</(p|h[1-6]|li|div|tr|blockquote|section)>", "\n");
    text = replaced(text, "<br\\p{White_Space}*/?>", "\n");
    text = decoded(replaced(text, "<[^>]+>", ""));
    int begin = 0;
    while (begin <= text.length()) {
        int end = text.indexOf(u'\n', begin);
        end = end < 0 ? text.length() : end;
        const UnicodeString line = trimmed(UnicodeString(text, begin, end - begin), "[\\t\\p{Zs}]");
        begin = end + 1;
        if (characters(line) < 30)
            continue;
        result.append(std::exchange(isFirst, false) ? UnicodeString() : UnicodeString("\n\n"));
        result.append(line);
    }
    return toUtf8(result);
}

std::string decodeEntities(const std::string& text)
{
    return toUtf8(decoded(fromUtf8(text)));
}

std::string withoutTags(const std::string& text)
{
    return toUtf8(replaced(fromUtf8(text), "<[^>]+>", ""));
}

} // namespace ReaderTextBySteps
