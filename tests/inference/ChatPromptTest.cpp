#include "ChatPrompt.h"

#include <gtest/gtest.h>

namespace {

using ChatPrompt::Token;

/// One token a byte: what a budget then means is easy to see.
std::vector<Token> byteTokens(const std::string& text)
{
    return {text.begin(), text.end()};
}

const std::size_t frame = ChatPrompt::text("", "").size();

TEST(ChatPromptTest, TheMarkersStandAroundSystemAndUser)
{
    EXPECT_EQ(ChatPrompt::text("Be brief.", "Hello"),
              "<|im_start|>system\nBe brief.<|im_end|>\n<|im_start|>user\nHello<|im_end|>\n"
              "<|im_start|>assistant\n");
}

TEST(ChatPromptTest, APromptOfExactlyTheBudgetStays)
{
    const std::string user(4096 - 100 - 16 - frame, 'x');
    EXPECT_EQ(ChatPrompt::fitted("", user, 100, byteTokens),
              byteTokens(ChatPrompt::text("", user)));
}

TEST(ChatPromptTest, ATokenTooManyCutsTheEndOfTheUserText)
{
    const std::size_t limit = 4096 - 100 - 16;
    const std::string user = "first" + std::string(limit + 1 - frame - 5, 'x');
    const auto kept = static_cast<std::size_t>(
        static_cast<double>(user.size()) *
        (static_cast<double>(limit) / static_cast<double>(limit + 1)) * 0.92);
    EXPECT_EQ(ChatPrompt::fitted("", user, 100, byteTokens),
              byteTokens(ChatPrompt::text("", user.substr(0, kept))));
}

TEST(ChatPromptTest, CuttingGoesOnUntilThePromptFits)
{
    // The beginning is dense in tokens, so that the first cut, made by the average, is too small.
    std::string user;
    for (int i = 0; i < 2000; ++i)
        user += "👩‍👩‍👧‍👦";
    user += std::string(60000, 'x');
    int calls = 0;
    const auto tokens = ChatPrompt::fitted("", user, 100, [&](const std::string& text) {
        ++calls;
        return byteTokens(text);
    });
    EXPECT_LE(tokens.size(), 4096U - 100 - 16);
    EXPECT_GT(calls, 2);
}

TEST(ChatPromptTest, AUserTextOf200CharactersIsNotShortened)
{
    std::string user;
    for (int i = 0; i < 200; ++i)
        user += "👩‍👩‍👧‍👦"; // 25 bytes, so 5000 tokens in all
    EXPECT_EQ(ChatPrompt::fitted("", user, 100, byteTokens),
              byteTokens(ChatPrompt::text("", user)));
}

TEST(ChatPromptTest, AUserTextOf201CharactersIs)
{
    std::string user;
    for (int i = 0; i < 201; ++i)
        user += "👩‍👩‍👧‍👦";
    EXPECT_LT(ChatPrompt::fitted("", user, 100, byteTokens).size(), 4096U);
}

TEST(ChatPromptTest, ALongSystemTextWithAShortUserTextStaysTooLong)
{
    const std::string system(5000, 's');
    EXPECT_EQ(ChatPrompt::fitted(system, "user", 100, byteTokens).size(),
              ChatPrompt::text(system, "user").size());
}

} // namespace
