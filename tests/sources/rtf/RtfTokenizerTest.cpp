#include "RtfTokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using Kind = RtfTokenizer::Kind;

/// All tokens, one after another as a reader of the test sees them.
std::string tokensOf(std::string_view rtf)
{
    RtfTokenizer tokenizer(rtf);
    std::string all;
    for (auto token = tokenizer.next(); token.kind != Kind::end; token = tokenizer.next()) {
        constexpr std::string_view letters = "?{}ws=";
        all += letters[static_cast<std::size_t>(token.kind)];
        if (token.kind != Kind::open && token.kind != Kind::close)
            all += token.text;
        if (token.parameter)
            all += ',' + std::to_string(*token.parameter);
        all += '|';
    }
    return all;
}

TEST(RtfTokenizerTest, WordsSymbolsBytesAndBracesAreTold)
{
    EXPECT_EQ(tokensOf("{\\rtf1\\ansi a\\~b\\'41}"), "{|wrtf,1|wansi|=a|s~|=b|=A|}|");
    EXPECT_EQ(tokensOf(""), "");
}

TEST(RtfTokenizerTest, AWordEndsWithWhatBelongsToItsNumber)
{
    EXPECT_EQ(tokensOf("\\a-1\\b-\\c \\d  \\e0x\\f--1"), "wa,-1|wb|=-|wc|wd|= |we,0|=x|wf|=--1|");
}

TEST(RtfTokenizerTest, HugeNumbersAreCutDown)
{
    EXPECT_EQ(tokensOf("\\a99999999999999999999\\b-99999999999999999999"),
              "wa,1073741824|wb,-1073741824|");
}

TEST(RtfTokenizerTest, BinaryDataIsPartOfItsWord)
{
    EXPECT_EQ(tokensOf("\\bin3 \\{}a\\bin-1 b\\bin9 c"), "wbin,3|=a|wbin,-1|=b|wbin,9|");
}

TEST(RtfTokenizerTest, BrokenEscapesAreSymbols)
{
    EXPECT_EQ(tokensOf("\\'4"), "s'|=4|");
    EXPECT_EQ(tokensOf("\\'g0"), "s'|=g0|");
    EXPECT_EQ(tokensOf("a\\"), "=a|");
}

} // namespace
