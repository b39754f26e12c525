#include "ReplacedPieces.h"

#include <gtest/gtest.h>

namespace {

/// Each "<" and the byte behind it as that byte in parentheses.
std::string inParentheses(std::string_view text)
{
    return replacedPieces(text, "<", [](std::string_view rest, std::string& result) {
        const std::string_view piece = rest.substr(0, 2);
        result.append("(").append(piece.substr(1)).append(")");
        return piece.size();
    });
}

TEST(ReplacedPiecesTest, WhatIsBetweenThePiecesStays)
{
    EXPECT_EQ(inParentheses("a<bc<de"), "a(b)c(d)e");
    EXPECT_EQ(inParentheses("abc"), "abc");
    EXPECT_EQ(inParentheses(""), "");
}

TEST(ReplacedPiecesTest, APieceMayBeginAndEndTheText)
{
    EXPECT_EQ(inParentheses("<a<b"), "(a)(b)");
    EXPECT_EQ(inParentheses("a<"), "a()");
}

TEST(ReplacedPiecesTest, WhatStandsForAPieceIsNotReplacedAgain)
{
    EXPECT_EQ(inParentheses("<<<a"), "(<)(a)");
}

} // namespace
