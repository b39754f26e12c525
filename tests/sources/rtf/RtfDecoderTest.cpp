#include "RtfDecoder.h"

#include "RtfCodePage.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

// Systems may have an ICU with fewer of them.
TEST(RtfDecoderTest, TheSystemHasEveryCodePage)
{
    RtfDecoder decoder;
    int count = 0;
    for (int codePage = 0; codePage <= 0xFFFF; ++codePage) {
        if (!RtfCodePage::isKnown(codePage))
            continue;
        ++count;
        EXPECT_EQ(decoder.decoded("aZ09", codePage), u"aZ09") << codePage;
        EXPECT_FALSE(decoder.decoded("\xB1\xB1", codePage).empty()) << codePage;
    }
    EXPECT_GT(count, 50);
}

TEST(RtfDecoderTest, EveryCharacterSetMeansACodePageThatIsKnown)
{
    std::set<int> codePages;
    for (int characterSet = -1; characterSet <= 256; ++characterSet)
        codePages.insert(RtfCodePage::ofCharacterSet(characterSet));
    EXPECT_EQ(codePages.erase(0), 1u);
    for (const int codePage : codePages)
        EXPECT_TRUE(RtfCodePage::isKnown(codePage)) << codePage;
    EXPECT_GT(codePages.size(), 20u);
}

TEST(RtfDecoderTest, WhatACodePageDoesNotHaveIsReplaced)
{
    RtfDecoder decoder;
    EXPECT_EQ(decoder.decoded("a\xFFz", 65001), u"a\uFFFDz");
    EXPECT_EQ(decoder.decoded("a\xFFz", 932), u"a\uFFFDz");
    EXPECT_EQ(decoder.decoded("\x81 z", 950), u"\uFFFD z");
    EXPECT_EQ(decoder.decoded("a\xFF\xFFz", RtfCodePage::johab), u"a\uFFFD\uFFFDz");
}

TEST(RtfDecoderTest, NothingIsKeptFromOneTextToTheNext)
{
    RtfDecoder decoder;
    EXPECT_EQ(decoder.decoded("\x93", 932), u"\uFFFD");
    EXPECT_EQ(decoder.decoded("\x93\xFA", 932), u"日");
    EXPECT_EQ(decoder.decoded("\xD0", RtfCodePage::johab), u"\uFFFD");
    EXPECT_EQ(decoder.decoded("\xD0\x65", RtfCodePage::johab), u"한");
}

TEST(RtfDecoderTest, TextsLongerThanABufferAreWhole)
{
    RtfDecoder decoder;
    std::string bytes;
    std::u16string japanese;
    std::u16string korean;
    std::string johab;
    for (int i = 0; i < 5000; ++i) {
        bytes += "a\x93\xFA";
        japanese += u"a日";
        johab += "a\xD0\x65";
        korean += u"a한";
    }
    EXPECT_TRUE(decoder.decoded(bytes, 932) == japanese);
    EXPECT_TRUE(decoder.decoded(johab, RtfCodePage::johab) == korean);
}

} // namespace
