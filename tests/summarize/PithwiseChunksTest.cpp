#include "Characters.h"
#include "Pithwise.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

Strings chunks(const std::string& text, std::size_t size)
{
    const std::vector<std::string_view> views = Pithwise::chunks(text, size);
    return {views.begin(), views.end()};
}

Strings linesOf(const std::string& text)
{
    Strings lines(1);
    for (const char byte : text) {
        if (byte == '\n')
            lines.emplace_back();
        else
            lines.back() += byte;
    }
    return lines;
}

/// The rules as they are described, with every count taken afresh.
Strings chunksStepByStep(const std::string& text, std::size_t size)
{
    Strings output;
    std::string current;
    for (std::string line : linesOf(text)) {
        if (Characters::count(line) > size && !current.empty()) {
            output.push_back(current);
            current.clear();
        }
        while (Characters::count(line) > size) {
            const std::size_t cut = Characters::prefix(line, size).bytes;
            output.push_back(line.substr(0, cut));
            line.erase(0, cut);
        }
        if (Characters::count(current) + Characters::count(line) + 1 > size) {
            output.push_back(current);
            current.clear();
        }
        current += (current.empty() ? "" : "\n") + line;
    }
    if (!current.empty())
        output.push_back(current);
    return output;
}

TEST(PithwiseChunksTest, EmptyTextGivesNone)
{
    EXPECT_EQ(chunks("", 10), Strings{});
}

TEST(PithwiseChunksTest, ShortLinesShareAChunk)
{
    EXPECT_EQ(chunks("abc\ndef", 10), Strings{"abc\ndef"});
    EXPECT_EQ(chunks("a\n\nb", 1000), Strings{"a\n\nb"});
}

TEST(PithwiseChunksTest, ALineOfExactlyTheSizeFollowsAnEmptyChunk)
{
    EXPECT_EQ(chunks("abcdefghij", 10), (Strings{"", "abcdefghij"}));
}

TEST(PithwiseChunksTest, ALongerLineIsCutIntoPiecesOfTheSize)
{
    EXPECT_EQ(chunks("abcdefghijklmnopqrstuvwxy", 10),
              (Strings{"abcdefghij", "klmnopqrst", "uvwxy"}));
    EXPECT_EQ(chunks("ab\nabcdefghijk\nx", 10), (Strings{"ab", "abcdefghij", "k\nx"}));
}

TEST(PithwiseChunksTest, LinesArePackedGreedily)
{
    EXPECT_EQ(chunks("aaa\nbbb\nccc\nddd", 10), (Strings{"aaa\nbbb", "ccc\nddd"}));
    EXPECT_EQ(chunks("aaaa\nbbbb\nc", 10), (Strings{"aaaa\nbbbb", "c"}));
}

TEST(PithwiseChunksTest, AnEmptyLineAtTheStartOfAChunkIsDropped)
{
    EXPECT_EQ(chunks("\n\na", 10), Strings{"a"});
    EXPECT_EQ(chunks("abcdefghij\n\nb", 10), (Strings{"", "abcdefghij", "b"}));
}

TEST(PithwiseChunksTest, ACarriageReturnAndTheJoiningLineFeedAreOneCharacter)
{
    EXPECT_EQ(chunks("aaa\r\nbb\nccc", 10), Strings{"aaa\r\nbb\nccc"});
}

TEST(PithwiseChunksTest, SizesCountCharactersAsPeopleSeeThem)
{
    const std::string family = "👩‍👩‍👧‍👦";
    EXPECT_EQ(chunks(family + family + family, 2), (Strings{family + family, family}));
}

TEST(PithwiseChunksTest, RandomTextsAreCutAsStepByStep)
{
    std::mt19937 random(3);
    const Strings alphabet = {"a",    "b",       "\n",     "\n", "\r",
                              "\r\n", "e\u0301", "\u0301", "🇩",  "👩‍👧"};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (std::size_t i = random() % 80; i > 0; --i)
            text += alphabet[random() % alphabet.size()];
        const std::size_t size = 1 + random() % 12;
        const Strings result = chunks(text, size);
        ASSERT_EQ(result, chunksStepByStep(text, size)) << testing::PrintToString(text) << size;
        for (const std::string& chunk : result)
            ASSERT_LE(Characters::count(chunk), size);
    }
}

} // namespace
