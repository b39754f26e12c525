#include "ChatPrompt.h"
#include "EngineFixture.h"
#include "LlamaHandles.h"
#include "LoadedModel.h"
#include "StandinVariants.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace {

using Logits = std::map<char, float>;

/// Draws from distributions that the test makes, through llama.cpp's own samplers.
class SamplingTest : public EngineFixture
{
protected:
    static constexpr int m_draws = 500; // enough for each of forty letters
    static constexpr std::string_view m_letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

    /// What the engine answers: a letter for each draw.
    std::string drawn(const Logits& logits)
    {
        StandinVariants::writeDice(logits, m_folder / "dice.gguf");
        std::string answer = generate(m_folder / "dice.gguf", m_draws);
        EXPECT_EQ(answer.size(), std::size_t{m_draws});
        return answer;
    }

    /// The code of the first evaluation.
    int evaluationOf(const std::filesystem::path& path) const
    {
        const auto loaded = LoadedModel::create(path);
        std::vector<ChatPrompt::Token> tokens = loaded->tokenize("text");
        return loaded->evaluate(tokens, m_token);
    }

    std::set<char> lettersDrawn(const Logits& logits)
    {
        const std::string answer = drawn(logits);
        return {answer.begin(), answer.end()};
    }

    static Logits alike(std::size_t letters)
    {
        Logits logits;
        for (const char letter : m_letters.substr(0, letters))
            logits[letter] = 0;
        return logits;
    }

    /// The same draws, by a chain of the test's own.
    std::string expected(const Logits& logits) const
    {
        StandinVariants::writeDice(logits, m_folder / "expected.gguf");
        const auto loaded = LoadedModel::create(m_folder / "expected.gguf");
        std::vector<ChatPrompt::Token> tokens =
            loaded->tokenize(ChatPrompt::text("You spell.", "Please spell it."));
        LlamaHandles::Sampler chain{llama_sampler_chain_init({.no_perf = true})};
        for (llama_sampler* sampler :
             {llama_sampler_init_top_k(40), llama_sampler_init_top_p(0.9F, 1),
              llama_sampler_init_temp(0.3F), llama_sampler_init_dist(1234)})
            llama_sampler_chain_add(chain.get(), sampler);
        std::string text;
        for (int i = 0; i < m_draws; ++i) {
            EXPECT_EQ(loaded->evaluate(tokens, m_token), 0);
            tokens = {loaded->sample(*chain)};
            text += loaded->piece(tokens.front());
        }
        return text;
    }
};

TEST_F(SamplingTest, EveryTokenIsTheOneThatTheFixedChainAndSeedDraw)
{
    Logits graded;
    for (const char letter : m_letters)
        graded[letter] = -0.02F * static_cast<float>(graded.size());
    EXPECT_EQ(drawn(graded), expected(graded));
}

TEST_F(SamplingTest, OnlyTheFortyLikeliestTokensCount)
{
    // Thirty letters are somewhat likelier than the others. The first forty weigh 39, of which nine
    // tenths are those thirty and 5.7 more; for 39 or 41 of them it would be 4.8 or 6.6 more.
    Logits logits = alike(m_letters.size());
    for (const char letter : m_letters.substr(30))
        logits[letter] = std::log(0.9F);
    EXPECT_EQ(lettersDrawn(logits).size(), 36U);
}

TEST_F(SamplingTest, OnlyTheLikeliestTokensThatMakeUpNineTenthsAreDrawn)
{
    // 35 of 39 are 0.897, and 28 of 31 are 0.903: another limit would let fewer or more pass.
    EXPECT_EQ(lettersDrawn(alike(39)).size(), 36U);
    LlamaEngine other;
    StandinVariants::writeDice(alike(31), m_folder / "other.gguf");
    const std::string answer = other.generate(m_folder / "other.gguf", "You spell.", "Please.",
                                              m_draws, m_token, [](const std::string&) {});
    EXPECT_EQ(std::set<char>(answer.begin(), answer.end()).size(), 28U);
}

TEST_F(SamplingTest, TheTemperatureSharpensTheOdds)
{
    // At the temperature of 0.3 these odds are three to one; at 1 they would be 1.4 to one.
    const std::string answer = drawn({{'a', 0.3F * std::log(3.0F)}, {'b', 0.0F}});
    const auto count = std::count(answer.begin(), answer.end(), 'a');
    EXPECT_NEAR(static_cast<double>(count), 0.75 * m_draws, 0.08 * m_draws);
}

TEST_F(SamplingTest, ATokenThatMakesUpNineTenthsIsTheOnlyOneDrawn)
{
    EXPECT_EQ(lettersDrawn({{'a', std::log(9.5F)}, {'b', 0.0F}}), std::set<char>{'a'});
}

TEST_F(SamplingTest, ALogitThatIsNoNumberIsNoticedFromTheFirstTokenOn)
{
    for (const char letter : {'\0', 'a'}) {
        for (const float logit : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
            StandinVariants::writeDice({{letter, logit}, {'b', 0.0F}}, m_folder / "damaged.gguf");
            EXPECT_EQ(evaluationOf(m_folder / "damaged.gguf"), -3);
        }
    }
}

TEST_F(SamplingTest, EveryAnswerBeginsTheDrawsAnew)
{
    const std::string first = drawn(alike(20));
    EXPECT_EQ(drawn(alike(20)), first);
}

} // namespace
