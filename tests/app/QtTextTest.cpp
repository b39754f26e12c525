#include "QtText.h"

#include "WhiteSpace.h"

#include <gtest/gtest.h>

#include <new>

namespace {

TEST(QtText, TextComesBackAsItWas)
{
    for (const std::string& text :
         {std::string(), std::string("\uFEFF\uFEFFmark"), std::string("a\0b", 3),
          std::string("naïve 中文 👩‍👧 \uFFFF \U0010FFFF"),
          std::string(100'000, 'x') + "\uFEFF"}) {
        const QString converted = QtText::fromUtf8(text);
        EXPECT_EQ(QtText::toUtf8(converted), text);
    }
}

TEST(QtText, WhatIsNoCharacterBecomesValidUtf8)
{
    const QString lone(QChar(0xD800));
    EXPECT_EQ(QtText::toUtf8("a" + lone + "b"), "a?b");
}

TEST(QtText, QtsWhiteSpaceIsOurs)
{
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character >= 0xD800 && character < 0xE000)
            continue;
        const QString text = QString::fromUcs4(&character, 1);
        EXPECT_EQ(QStringView(text).trimmed().isEmpty(),
                  WhiteSpace::trimmed(QtText::toUtf8(text)).empty())
            << std::hex << static_cast<std::uint32_t>(character);
    }
}

TEST(QtText, ErrorsAreShownInTheirOwnWords)
{
    EXPECT_EQ(QtText::sentence(std::runtime_error("naïve")), QStringLiteral("naïve"));
    EXPECT_EQ(QtText::sentence(std::runtime_error("na\xEFve")), QStringLiteral("naïve"));
    EXPECT_EQ(QtText::sentence(std::bad_alloc()), QStringLiteral("There is not enough memory."));
}

} // namespace
