#include "SampleText.h"

#include <algorithm>
#include <random>
#include <vector>

namespace SampleText {

namespace {

constexpr std::string_view plainWords = "the meeting of a report project and was decided by budget "
                                        "customer in schedule team tomorrow";
// Latin, Cyrillic, Greek, Arabic, Devanagari, Chinese and Japanese, Hangul; flags, families, skin
// tones.
constexpr std::string_view mixedWords =
    "the café naïve Straße e\u0301 решение бюджет проект и "
    "ἀπόφασις έργο ομάδα και المشروع اجتماع فِي قرار "
    "निर्णय परियोजना क्षेत्र और 会议 決定 予算案 项目 "
    "회의 결정 예산 🇩🇪🇫🇷 🇯🇵 👩‍👩‍👧‍👦 "
    "👨‍👩‍👧 👍🏽 👋🏿";

constexpr std::size_t lineLength = 80;
constexpr unsigned linesPerParagraph = 8;

struct Separators
{
    std::string_view line;
    std::string_view paragraph;
};

std::vector<std::string_view> split(std::string_view words)
{
    std::vector<std::string_view> result;
    for (std::size_t begin = 0; begin <= words.size();) {
        const std::size_t end = std::min(words.find(' ', begin), words.size());
        result.push_back(words.substr(begin, end - begin));
        begin = end + 1;
    }
    return result;
}

/// The words in random order, in lines of about 80 bytes and paragraphs of about 8 lines.
std::string prose(std::string_view allWords, Separators separators, std::size_t bytes)
{
    const std::vector<std::string_view> words = split(allWords);
    std::mt19937 random(1);
    std::string text;
    text.reserve(bytes);
    std::size_t lineBegin = 0;
    while (true) {
        const std::string_view word = words[random() % words.size()];
        std::string_view separator = " ";
        const bool endsLine = text.size() + word.size() - lineBegin >= lineLength;
        if (endsLine) {
            const bool endsParagraph = random() % linesPerParagraph == 0;
            separator = endsParagraph ? separators.paragraph : separators.line;
        }
        if (text.size() + word.size() + separator.size() > bytes)
            break;
        text.append(word).append(separator);
        if (endsLine)
            lineBegin = text.size();
    }
    text.resize(bytes, '.');
    return text;
}

std::string combiningMarks(std::size_t bytes)
{
    constexpr unsigned markCount = 0x30; // U+0300 to U+032F, of two bytes each
    std::string text;
    text.reserve(bytes);
    for (unsigned i = 0; text.size() + 2 <= bytes; ++i) {
        text += '\xCC';
        text += static_cast<char>(0x80 + i % markCount);
    }
    text.resize(bytes, '.');
    return text;
}

} // namespace

std::string_view name(Kind kind)
{
    switch (kind) {
    case Kind::asciiProse:
        return "ASCII prose";
    case Kind::mixedScripts:
        return "mixed scripts and emoji";
    case Kind::oneLine:
        return "one line";
    case Kind::lineFeeds:
        return "only line feeds";
    case Kind::combiningMarks:
        return "only combining marks";
    case Kind::carriageReturns:
        return "CR LF line ends";
    }
    return {};
}

std::string make(Kind kind, std::size_t bytes)
{
    switch (kind) {
    case Kind::asciiProse:
        return prose(plainWords, {"\n", "\n\n"}, bytes);
    case Kind::mixedScripts:
        return prose(mixedWords, {"\n", "\n\n"}, bytes);
    case Kind::oneLine:
        return prose(plainWords, {" ", " "}, bytes);
    case Kind::lineFeeds:
        return std::string(bytes, '\n');
    case Kind::combiningMarks:
        return combiningMarks(bytes);
    case Kind::carriageReturns:
        return prose(plainWords, {"\r\n", "\r\n\r\n"}, bytes);
    }
    return {};
}

} // namespace SampleText
