#include "LlamaEngine.h"

#include "BenchModel.h"
#include "ChatPrompt.h"
#include "EngineFixture.h"
#include "LoadedModel.h"

#include <atomic>
#include <future>
#include <vector>

namespace {

namespace fs = std::filesystem;
using StandinModel::Ending;
using StandinModel::Piece;

/// `count` characters, each a letter under `marks` accents of two bytes; the stand-in model takes a
/// token for each byte.
std::string marked(int count, int marks)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += 'e';
        for (int mark = 0; mark < marks; ++mark)
            text += "\u0301";
    }
    return text;
}

using LlamaEngineTest = EngineFixture;

TEST_F(LlamaEngineTest, TheAnswerStreamsAndIsTheScript)
{
    const std::string script =
        "**Summary.** A naïve 中文 text, 👩‍👧 and all.\n- one\n- two";
    EXPECT_EQ(generate(model({StandinModel::split(script)})), script);
    ASSERT_GT(m_updates.size(), 5U);
    for (std::size_t i = 1; i < m_updates.size(); ++i) {
        EXPECT_TRUE(m_updates[i].starts_with(m_updates[i - 1]));
        EXPECT_GT(m_updates[i].size(), m_updates[i - 1].size());
    }
    EXPECT_EQ(m_updates.back(), script);
}

TEST_F(LlamaEngineTest, TheAnswerIsTrimmedTheUpdatesAreNot)
{
    EXPECT_EQ(generate(model({{{" \n "}, {"text"}, {"\n\n"}}})), "text");
    EXPECT_EQ(m_updates, (std::vector<std::string>{" \n ", " \n text", " \n text\n\n"}));
}

TEST_F(LlamaEngineTest, ACharacterSplitOverTwoTokensAppearsOnlyWhenItIsComplete)
{
    EXPECT_EQ(generate(model({{{"a "}, {"\xF0\x9F"}, {"\x91\xA9"}, {" b"}}})), "a 👩 b");
    EXPECT_EQ(m_updates, (std::vector<std::string>{"a ", "a 👩", "a 👩 b"}));
}

TEST_F(LlamaEngineTest, AnIncompleteCharacterAtTheEndIsLeftOut)
{
    EXPECT_EQ(generate(model({{{"text"}, {"\xF0\x9F"}}})), "text");
}

TEST_F(LlamaEngineTest, AControlTokenRendersAsNothing)
{
    EXPECT_EQ(generate(model({{{"one"}, {"", Piece::Kind::control}, {" two"}}})), "one two");
    EXPECT_EQ(m_updates, (std::vector<std::string>{"one", "one two"}));
}

TEST_F(LlamaEngineTest, APieceOfMoreThan256BytesContributesNothing)
{
    EXPECT_EQ(generate(model({{{"one"}, {std::string(257, 'x')}, {" two"}}})), "one two");
    EXPECT_EQ(m_updates, (std::vector<std::string>{"one", "one two"}));
}

TEST_F(LlamaEngineTest, APieceOf256BytesIsWhole)
{
    const std::string longest(256, 'x');
    EXPECT_EQ(generate(model({{{"one"}, {longest}}})), "one" + longest);
}

TEST_F(LlamaEngineTest, EndOfGenerationAtOnceGivesAnEmptyAnswer)
{
    EXPECT_EQ(generate(model({})), "");
    EXPECT_TRUE(m_updates.empty());
}

TEST_F(LlamaEngineTest, AnAnswerThatNeverEndsStopsAtTheBudget)
{
    const fs::path path = model({{{"a"}, {"b"}, {"c"}}, Ending::never});
    EXPECT_EQ(generate(path, 7), "abcabca");
    EXPECT_EQ(m_updates.size(), 7U);
}

TEST_F(LlamaEngineTest, ABudgetOfNothingGivesAnEmptyAnswer)
{
    EXPECT_EQ(generate(model({{{"a"}}, Ending::never}), 0), "");
    EXPECT_TRUE(m_updates.empty());
}

TEST_F(LlamaEngineTest, ABudgetOfNothingStillTriesTheModelAndThePrompt)
{
    try {
        generate(m_folder / "missing.gguf", 0);
        ADD_FAILURE() << "no error";
    } catch (const AppError& error) {
        EXPECT_EQ(error.message(), "Could not load the language model.");
    }
    try {
        generate(model({{{"a"}}}), 0, marked(150, 20)); // does not fit
        ADD_FAILURE() << "no error";
    } catch (const AppError& error) {
        EXPECT_EQ(error.message(), "Model evaluation failed (1).");
    }
}

TEST_F(LlamaEngineTest, CancellingDuringGenerationKeepsTheTextSoFar)
{
    const fs::path path = model({{{" a"}, {" b"}, {" c "}, {"d"}}, Ending::never});
    int updates = 0;
    const std::string answer =
        m_engine.generate(path, "", "", 500, m_token, [&](const std::string&) {
            if (++updates == 3)
                m_token.cancel();
        });
    EXPECT_EQ(answer, "a b c");
    EXPECT_EQ(updates, 3);
}

TEST_F(LlamaEngineTest, ACancelledTokenGivesAnEmptyAnswerWithoutAnError)
{
    m_token.cancel();
    EXPECT_EQ(generate(model({{{"a"}}, Ending::never})), "");
    EXPECT_TRUE(m_updates.empty());
}

TEST_F(LlamaEngineTest, CancellingStopsTheEvaluationOfThePrompt)
{
    const auto loaded = LoadedModel::create(model({{{"a"}}, Ending::never}));
    std::vector<ChatPrompt::Token> prompt = loaded->tokenize(std::string(3000, 'x'));
    EXPECT_EQ(loaded->evaluate(prompt, m_token), 0);
    loaded->clear();
    m_token.cancel();
    EXPECT_EQ(loaded->evaluate(prompt, m_token), 2); // llama.cpp's code for "aborted"
}

TEST_F(LlamaEngineTest, NothingOfOneAnswerReachesTheNext)
{
    const fs::path path =
        model({StandinModel::split("The same every time, whatever came before.")});
    const std::string first = generate(path);
    generate(path, 3, std::string(5000, 'y'));
    EXPECT_EQ(generate(path), first);
}

TEST_F(LlamaEngineTest, AnotherPathStillUsesTheModelLoadedFirst)
{
    const fs::path first = model({{{"first"}}}, "first.gguf");
    const fs::path second = model({{{"second"}}}, "second.gguf");
    EXPECT_EQ(generate(first), "first");
    EXPECT_EQ(generate(second), "first");
    EXPECT_EQ(generate(m_folder / "missing.gguf"), "first");
}

TEST_F(LlamaEngineTest, AMissingModelIsAnErrorAndTheNextCallTriesAgain)
{
    EXPECT_EQ(errorOf(m_folder / "missing.gguf"), "Could not load the language model.");
    EXPECT_EQ(generate(model({{{"back"}}})), "back");
}

TEST_F(LlamaEngineTest, APromptThatCannotFitIsAnErrorAndTheEngineLivesOn)
{
    const fs::path path = model({{{"fine"}}});
    EXPECT_EQ(errorOf(path, marked(150, 20)), "Model evaluation failed (1).");
    EXPECT_EQ(generate(path), "fine");
}

TEST_F(LlamaEngineTest, APromptJustOverTheBudgetWithAShortUserTextIsEvaluatedAsItIs)
{
    // 150 characters of 27 bytes, a token each, and the frame with its five markers.
    const std::string user = marked(150, 13);
    const std::string markers = "<|im_start|><|im_end|><|im_start|><|im_end|><|im_start|>";
    const std::size_t prompt = ChatPrompt::text("You spell.", user).size() - markers.size() + 5;
    const int free = 4096 - static_cast<int>(prompt);
    const int maxTokens = free + 50;
    ASSERT_GT(prompt, 4096U - static_cast<unsigned>(maxTokens) - 16);
    const std::string answer = generate(model({{{"a"}, {"b"}}, Ending::never}), maxTokens, user);
    // Generation ends quietly when the context is full: the last token sampled has no room.
    EXPECT_EQ(m_updates.size(), static_cast<std::size_t>(free) + 1);
    EXPECT_EQ(answer.size(), static_cast<std::size_t>(free) + 1);
}

TEST_F(LlamaEngineTest, ALongUserTextIsCutToTheBudget)
{
    EXPECT_EQ(generate(model({{{"fine"}}}), 500, std::string(100'000, 'x')), "fine");
}

TEST_F(LlamaEngineTest, CallsFromSeveralThreadsRunOneAfterTheOther)
{
    const fs::path path = model({{{"a"}, {"b"}, {"c"}}, Ending::never});
    std::atomic<int> running = 0;
    std::atomic<bool> overlapped = false;
    const auto call = [&] {
        return m_engine.generate(path, "", "", 30, m_token, [&](const std::string& text) {
            if (text.size() == 1)
                overlapped = overlapped || ++running > 1;
            if (text.size() == 30)
                --running;
        });
    };
    std::vector<std::future<std::string>> calls;
    for (int i = 0; i < 4; ++i)
        calls.push_back(std::async(std::launch::async, call));
    for (std::future<std::string>& result : calls)
        EXPECT_EQ(result.get().size(), 30U);
    EXPECT_FALSE(overlapped);
}

TEST_F(LlamaEngineTest, NothingIsLogged)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    errorOf(m_folder / "missing.gguf");
    generate(model({{{"quiet"}}}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LlamaEngineTest, TheRealTokenizerReadsTheMarkersAsSingleTokens)
{
    BenchModel::write(m_folder / "bench.gguf", {1, 256, 256, 4, 2});
    const auto loaded = LoadedModel::create(m_folder / "bench.gguf");
    EXPECT_EQ(loaded->tokenize(ChatPrompt::text("Hi", "Hello world")),
              (std::vector<ChatPrompt::Token>{151644, 8948, 198, 13048, 151645, 198, 151644, 872,
                                              198, 9707, 1879, 151645, 198, 151644, 77091, 198}));
    EXPECT_EQ(loaded->tokenize(""), std::vector<ChatPrompt::Token>{});
}

TEST_F(LlamaEngineTest, TheFixedSeedGivesTheSameAnswerEveryTime)
{
    BenchModel::write(m_folder / "bench.gguf", {1, 256, 256, 4, 2});
    const std::string first = generate(m_folder / "bench.gguf", 20);
    EXPECT_EQ(first.size(), 20U);
    EXPECT_EQ(generate(m_folder / "bench.gguf", 20), first);
}

} // namespace
