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

TEST(RtfTokenizerTest, AWordIsLettersOfEitherCase)
{
    EXPECT_EQ(tokensOf("\\azAZ1\\a@\\a[\\a`\\a{"), "wazAZ,1|wa|=@|wa|=[|wa|=`|wa|{|");
    EXPECT_EQ(tokensOf("\\a0\\a9\\a/\\a:"), "wa,0|wa,9|wa|=/|wa|=:|");
}

TEST(RtfTokenizerTest, HexadecimalDigitsMakeAByte)
{
    EXPECT_EQ(tokensOf("\\'40\\'49\\'4a\\'4f\\'4A\\'4F\\'5a"), "=@|=I|=J|=O|=J|=O|=Z|");
    for (const char other : {'/', ':', '@', 'G', '`', 'g'})
        EXPECT_EQ(tokensOf(std::string("\\'4") + other), std::string("s'|=4") + other + '|');
}

TEST(RtfTokenizerTest, HugeNumbersAreCutDown)
{
    EXPECT_EQ(tokensOf("\\a99999999999999999999\\b-99999999999999999999"),
              "wa,1073741824|wb,-1073741824|");
}

TEST(RtfTokenizerTest, BinaryDataIsPartOfItsWord)
{
    EXPECT_EQ(tokensOf("\\bin3 \\{}a\\bin-1 b\\bin9 c"), "wbin,3|=a|wbin,-1|=b|wbin,9|");
    EXPECT_EQ(tokensOf("\\bin1 {a\\bin0 b\\bin c"), "wbin,1|=a|wbin,0|=b|wbin|=c|");
}

TEST(RtfTokenizerTest, BrokenEscapesAreSymbols)
{
    EXPECT_EQ(tokensOf("\\'4"), "s'|=4|");
    EXPECT_EQ(tokensOf("\\'g0"), "s'|=g0|");
    EXPECT_EQ(tokensOf("a\\"), "=a|");
}

} // namespace
