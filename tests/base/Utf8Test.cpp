#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

TEST(Utf8Test, ValidTextStaysAsItIs)
{
    EXPECT_EQ(Utf8::decoded("naïve – 中 👩"), "naïve – 中 👩");
    EXPECT_EQ(Utf8::decoded(""), "");
    EXPECT_EQ(Utf8::decoded("a\0b"s), "a\0b"s);
}

TEST(Utf8Test, ALeadingByteOrderMarkStays)
{
    EXPECT_EQ(Utf8::decoded("\xEF\xBB\xBFtext"), "\xEF\xBB\xBFtext");
}

TEST(Utf8Test, BytesThatAreNotUtf8AreReadAsLatin1)
{
    EXPECT_EQ(Utf8::decoded("caf\xE9"), "café");
    EXPECT_EQ(Utf8::decoded("\xFF"), "ÿ");
    EXPECT_EQ(Utf8::decoded("\x80"), "\u0080");
}

TEST(Utf8Test, WhatIsKnownToBeLatin1IsReadSoEvenIfItCouldBeUtf8)
{
    EXPECT_EQ(Utf8::fromLatin1("caf\xE9"), "café");
    EXPECT_EQ(Utf8::fromLatin1("\xC3\xA9"), "Ã©");
}

TEST(Utf8Test, ATruncatedLastCharacterIsInvalid)
{
    EXPECT_FALSE(Utf8::isValid("abc\xC3"));
    EXPECT_FALSE(Utf8::isValid("abc\xE4\xB8"));
    EXPECT_FALSE(Utf8::isValid("abcdefgh\xF0\x9F\x91"));
    EXPECT_EQ(Utf8::decoded("caf\xC3"), "cafÃ");
}

TEST(Utf8Test, DecodingIsStrict)
{
    EXPECT_FALSE(Utf8::isValid("\xC0\x80"));         // an overlong zero
    EXPECT_FALSE(Utf8::isValid("\xED\xA0\x80"));     // half of a surrogate pair
    EXPECT_FALSE(Utf8::isValid("\xF4\x90\x80\x80")); // beyond the last code point
    EXPECT_TRUE(Utf8::isValid("\xF4\x8F\xBF\xBF"));
}

TEST(Utf8Test, OneBadByteIsFoundAtEveryPlaceInLongText)
{
    const std::string good(100, 'a');
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::string bad = good;
        bad[i] = '\x80';
        ASSERT_FALSE(Utf8::isValid(bad)) << i;
    }
    EXPECT_TRUE(Utf8::isValid(good));
}

} // namespace
