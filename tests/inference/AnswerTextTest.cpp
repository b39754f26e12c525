#include "AnswerText.h"

#include <gtest/gtest.h>

namespace {

TEST(AnswerTextTest, WholeCharactersAppearAtOnce)
{
    AnswerText answer;
    EXPECT_TRUE(answer.append("Hel"));
    EXPECT_TRUE(answer.append("lo é"));
    EXPECT_EQ(answer.text(), "Hello é");
}

TEST(AnswerTextTest, ASplitCharacterAppearsWhenItIsComplete)
{
    AnswerText answer;
    EXPECT_FALSE(answer.append("a\xF0\x9F"));
    EXPECT_EQ(answer.text(), "");
    EXPECT_FALSE(answer.append("\x91"));
    EXPECT_TRUE(answer.append("\xA9"));
    EXPECT_EQ(answer.text(), "a👩");
}

TEST(AnswerTextTest, AnEmptyPieceChangesNothing)
{
    AnswerText answer;
    answer.append("a\xC3");
    EXPECT_FALSE(answer.append(""));
    EXPECT_TRUE(answer.append("\xA9"));
    EXPECT_EQ(answer.text(), "aé");
}

TEST(AnswerTextTest, BytesThatNeverBecomeACharacterAreLeftOut)
{
    AnswerText answer;
    answer.append("good");
    EXPECT_FALSE(answer.append("\xFF"));
    EXPECT_EQ(answer.text(), "good");
}

} // namespace
