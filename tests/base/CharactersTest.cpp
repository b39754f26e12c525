#include "Characters.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <array>
#include <memory>
#include <random>
#include <string>

namespace {

/// The boundaries that ICU's own break iterator finds, as byte offsets.
std::vector<std::size_t> boundariesByIcu(const std::string& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText source = UTEXT_INITIALIZER;
    utext_openUTF8(&source, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator->setText(&source, status);
    EXPECT_TRUE(U_SUCCESS(status));
    std::vector<std::size_t> boundaries;
    while (iterator->next() != icu::BreakIterator::DONE)
        boundaries.push_back(static_cast<std::size_t>(iterator->current()));
    utext_close(&source);
    return boundaries;
}

std::vector<std::size_t> boundaries(const std::string& text)
{
    std::vector<std::size_t> found;
    for (std::size_t n = 1; found.empty() || found.back() < text.size(); ++n)
        found.push_back(Characters::prefix(text, n).bytes);
    return found;
}

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char byte : text) {
        std::array<char, 5> hex{};
        std::snprintf(hex.data(), hex.size(), "\\x%02X", static_cast<unsigned char>(byte));
        result += hex.data();
    }
    return result;
}

TEST(CharactersTest, EmptyTextHasNone)
{
    EXPECT_EQ(Characters::count(""), 0U);
    EXPECT_EQ(Characters::prefix("", 5).bytes, 0U);
}

TEST(CharactersTest, ALineBreakOfTwoCodesIsOneCharacter)
{
    EXPECT_EQ(Characters::count("a\r\nb"), 3U);
    EXPECT_EQ(Characters::count("a\n\rb"), 4U);
    EXPECT_EQ(Characters::count("\r\r\n\n"), 3U);
}

TEST(CharactersTest, WhatAPersonSeesAsOneIsOne)
{
    EXPECT_EQ(Characters::count("e\u0301"), 1U);                   // letter and accent
    EXPECT_EQ(Characters::count("👩‍👩‍👧‍👦"), 1U); // a family of four
    EXPECT_EQ(Characters::count("👍🏽"), 1U);                  // with a skin tone
    EXPECT_EQ(Characters::count("🇩🇪🇫🇷🇩"), 3U);                     // two flags and a half
    EXPECT_EQ(Characters::count("각"), 1U);                        // Hangul of three parts
    EXPECT_EQ(Characters::count("नि"), 1U);                        // consonant and vowel sign
}

TEST(CharactersTest, AnAccentJoinsTheLastLetterOfARunOfAscii)
{
    const std::string text = std::string(100, 'a') + "\u0301" + std::string(100, 'b');
    EXPECT_EQ(Characters::count(text), 200U);
    EXPECT_EQ(Characters::prefix(text, 100).bytes, 102U);
    EXPECT_EQ(Characters::prefix(text, 99).bytes, 99U);
}

TEST(CharactersTest, AnAccentDoesNotJoinAControl)
{
    EXPECT_EQ(Characters::count("a\n\u0301"), 3U);
    EXPECT_EQ(Characters::count("a\x7F\u0301"), 3U);
    EXPECT_EQ(Characters::count(std::string(40, '\t') + "\u0301"), 41U);
}

TEST(CharactersTest, APrefixNeverSplitsACharacter)
{
    const std::string text = "x👩‍👩‍👧‍👦y";
    EXPECT_EQ(Characters::prefix(text, 0).bytes, 0U);
    EXPECT_EQ(Characters::prefix(text, 1).bytes, 1U);
    EXPECT_EQ(Characters::prefix(text, 2).bytes, text.size() - 1);
    EXPECT_EQ(Characters::prefix(text, 3).bytes, text.size());
    EXPECT_EQ(Characters::prefix(text, 9).characters, 3U);
}

TEST(CharactersTest, EveryPairOfCharacterClassesBreaksAsIcuSays)
{
    // One member or more of every class that the rules tell apart.
    const std::array<std::string, 24> samples = {
        "a",      "\r",     "\n",     "\t",     "\u0301", "\u200D", "\u0903", "\u0600",
        "\u1100", "\u1160", "\u11A8", "\uAC00", "\uAC01", "🇩",      "👩",      "❤",
        "\u00AD", "\uFEFF", "🏽",   "\u00A0", "é",      "中",     "\u0E33", "1"};
    for (const std::string& a : samples) {
        for (const std::string& b : samples) {
            for (const std::string& c : samples) {
                const std::string text = a + b + c;
                ASSERT_EQ(boundaries(text), boundariesByIcu(text)) << escaped(text);
            }
        }
    }
}

TEST(CharactersTest, RandomTextsBreakAsIcuSays)
{
    std::mt19937 random(1);
    const std::u32string alphabet = U"aB 1\r\n\t\u0301\u200D\u0903\u0600\u1100\u1160\u11A8\uAC00"
                                    U"🇩🇪👩👧❤️🏽é中नि\u094D\u0E33#️⃣";
    for (int round = 0; round < 5000; ++round) {
        icu::UnicodeString text;
        const std::size_t length = 1 + random() % 60;
        while (static_cast<std::size_t>(text.countChar32()) < length) {
            const auto character = static_cast<UChar32>(alphabet[random() % alphabet.size()]);
            const auto times = static_cast<int>(random() % 8 == 0 ? random() % 20 : 1);
            for (int i = 0; i < times; ++i)
                text.append(character);
        }
        std::string bytes;
        text.toUTF8String(bytes);
        ASSERT_EQ(boundaries(bytes), boundariesByIcu(bytes)) << escaped(bytes);
    }
}

} // namespace
