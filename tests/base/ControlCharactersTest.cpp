#include "ControlCharacters.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

TEST(ControlCharactersTest, WhatTellsATerminalWhatToDoIsOne)
{
    for (const std::string& character : {"\0"s, "\t"s, "\n"s, "\x1F"s, "\x7F"s})
        EXPECT_EQ(ControlCharacters::lengthAt(character + "a"), 1u);
    for (const std::string character : {"\u0080", "\u009F"})
        EXPECT_EQ(ControlCharacters::lengthAt(character + "a"), 2u);
}

TEST(ControlCharactersTest, WhatTurnsTextAroundIsOne)
{
    // In pieces, so that this source is not turned around itself.
    for (const char last : {'\xAA', '\xAE'})
        EXPECT_EQ(ControlCharacters::lengthAt(std::string("\xE2\x80") + last + "a"), 3u);
    for (const char last : {'\xA6', '\xA9'})
        EXPECT_EQ(ControlCharacters::lengthAt(std::string("\xE2\x81") + last + "a"), 3u);
}

TEST(ControlCharactersTest, WhatIsShownOrActsOnItsNeighboursIsNone)
{
    for (const std::string character : {" ", "~", "\u00A0", "\u00C2", "\u200D", "\u200F", "\u2029",
                                        "\u202F", "\u2065", "\u206A", "\u2080", "中", "👩"})
        EXPECT_EQ(ControlCharacters::lengthAt(character + "a"), 0u) << character;
}

TEST(ControlCharactersTest, ACharacterThatIsCutOffIsNone)
{
    EXPECT_EQ(ControlCharacters::lengthAt("\xC2"), 0u);
    EXPECT_EQ(ControlCharacters::lengthAt("\xE2\x80"), 0u);
}

} // namespace
