#include "EngineFixture.h"
#include "LoadedModel.h"
#include "StandinVariants.h"

namespace {

namespace fs = std::filesystem;

/// A model that answers with the letter it has read most often, in all it remembers.
class EngineMemoryTest : public EngineFixture
{
protected:
    fs::path tally()
    {
        StandinVariants::writeTally("ABC", m_folder / "tally.gguf");
        return m_folder / "tally.gguf";
    }
};

TEST_F(EngineMemoryTest, AnAnswerDependsOnTheWholePrompt)
{
    EXPECT_EQ(generate(tally(), 10, "BBBB, then A."), "B");
    EXPECT_EQ(generate(tally(), 10, "A, then BBBB."), "B");
    EXPECT_EQ(generate(tally(), 10, "CCCCC, BB and " + std::string(1000, 'x')), "C");
    EXPECT_EQ(m_updates, std::vector<std::string>{"C"});
}

TEST_F(EngineMemoryTest, NothingOfAnEarlierPromptIsRemembered)
{
    EXPECT_EQ(generate(tally(), 10, std::string(500, 'A')), "A");
    EXPECT_EQ(generate(tally(), 10, "BBB"), "B");
    EXPECT_EQ(generate(tally(), 10, "CC"), "C");
}

TEST_F(EngineMemoryTest, NothingOfACancelledPromptIsRemembered)
{
    const fs::path path = tally();
    const std::string stopped = m_engine.generate(path, "", std::string(500, 'A'), 10, m_token,
                                                  [this](const std::string&) { m_token.cancel(); });
    EXPECT_EQ(stopped, "A");
    const CancelToken other;
    EXPECT_EQ(m_engine.generate(path, "", "BBB", 10, other, [](const std::string&) {}), "B");
}

TEST_F(EngineMemoryTest, NothingOfAPromptWithoutAnAnswerIsRemembered)
{
    EXPECT_EQ(generate(tally(), 0, std::string(500, 'A')), "");
    EXPECT_EQ(generate(tally(), 10, "BBB"), "B");
}

TEST_F(EngineMemoryTest, WhatIsNotClearedIsRemembered)
{
    const auto loaded = LoadedModel::create(tally());
    const auto read = [&](const std::string& text) {
        std::vector<ChatPrompt::Token> tokens = loaded->tokenize(text + "\n");
        EXPECT_EQ(loaded->evaluate(tokens, m_token), 0);
        const LlamaHandles::Sampler likeliest{llama_sampler_init_greedy()};
        return loaded->piece(loaded->sample(*likeliest));
    };
    EXPECT_EQ(read("AAA"), "A");
    EXPECT_EQ(read("BB"), "A");
    loaded->clear();
    EXPECT_EQ(read("BB"), "B");
}

} // namespace
