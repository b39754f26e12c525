#include "WhiteSpace.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

/// The five steps as they are described, one pass each, as slow as that is.
std::string normalisedStepByStep(std::string text)
{
    replaceAll(text, "\r\n", "\n");
    replaceAll(text, "\xC2\xA0", " ");
    while (text.find("\n\n\n") != std::string::npos)
        replaceAll(text, "\n\n\n", "\n\n");
    while (text.find("  ") != std::string::npos)
        replaceAll(text, "  ", " ");
    return std::string(WhiteSpace::trimmed(text));
}

TEST(WhiteSpaceTest, TrimmingRemovesEveryKindOfWhiteSpaceAtBothEnds)
{
    EXPECT_EQ(WhiteSpace::trimmed(" \t\r\n\u00A0\u2003a b\u2028\u3000\u0085\v\f "), "a b");
    EXPECT_EQ(WhiteSpace::trimmed(""), "");
    EXPECT_EQ(WhiteSpace::trimmed(" \n\u00A0"), "");
    EXPECT_EQ(WhiteSpace::trimmed("\uFEFFa\u200B"), "\uFEFFa\u200B");
}

TEST(WhiteSpaceTest, TrimmingBlanksLeavesLineBreaks)
{
    EXPECT_EQ(WhiteSpace::trimmedBlanks(" \t\u00A0\u3000a b\u2003 "), "a b");
    EXPECT_EQ(WhiteSpace::trimmedBlanks(" \r a\n "), "\r a\n");
    EXPECT_EQ(WhiteSpace::trimmedBlanks("\u2028a\u0085"), "\u2028a\u0085");
    EXPECT_EQ(WhiteSpace::trimmedBlanks(" \t"), "");
}

TEST(WhiteSpaceTest, BlankLinesBecomeOneBlankLine)
{
    EXPECT_EQ(WhiteSpace::normalised("a\r\n\r\n\r\n\r\nb"), "a\n\nb");
    EXPECT_EQ(WhiteSpace::normalised("a\n\n\n\n\nb"), "a\n\nb");
    EXPECT_EQ(WhiteSpace::normalised("a\n\nb"), "a\n\nb");
}

TEST(WhiteSpaceTest, SpacesBecomeOneSpaceNoBreakSpacesAmongThem)
{
    EXPECT_EQ(WhiteSpace::normalised("a    b"), "a b");
    EXPECT_EQ(WhiteSpace::normalised("a\u00A0b"), "a b");
    EXPECT_EQ(WhiteSpace::normalised("a \u00A0 b\u00A0\u00A0c"), "a b c");
}

TEST(WhiteSpaceTest, TabsAndLoneCarriageReturnsStay)
{
    EXPECT_EQ(WhiteSpace::normalised("a\t\tb\rc"), "a\t\tb\rc");
}

TEST(WhiteSpaceTest, NormalisingTwiceCanChangeMoreThanOnce)
{
    EXPECT_EQ(WhiteSpace::normalised("a\r\r\nb"), "a\r\nb");
    EXPECT_EQ(WhiteSpace::normalised("a\r\nb"), "a\nb");
}

TEST(WhiteSpaceTest, BlankTextBecomesEmpty)
{
    EXPECT_EQ(WhiteSpace::normalised(" \r\n\u00A0\t\n"), "");
    EXPECT_EQ(WhiteSpace::normalised(""), "");
}

TEST(WhiteSpaceTest, RandomTextsNormaliseAsStepByStep)
{
    std::mt19937 random(7);
    const std::vector<std::string> alphabet = {"a", "b",  "é",      "©",  "中",   " ",
                                               " ", "\n", "\u00A0", "\r", "\r\n", "\t"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        const std::size_t length = random() % 60;
        const std::size_t calm = 1 + random() % 12; // how long stretches of letters are
        while (text.size() < length) {
            text += alphabet[random() % alphabet.size()];
            text.append(random() % calm, 'x');
        }
        ASSERT_EQ(WhiteSpace::normalised(text), normalisedStepByStep(text))
            << testing::PrintToString(text);
    }
}

} // namespace
