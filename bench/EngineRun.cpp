#include "EngineRun.h"

#include "ChatPrompt.h"
#include "LlamaEngine.h"
#include "LlamaHandles.h"

#include <array>
#include <chrono>
#include <future>
#include <random>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace EngineRun {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

namespace {

constexpr std::string_view systemText = "You are a precise summarization assistant.";

int countTokens(const llama_model& model, const std::string& text)
{
    std::vector<llama_token> tokens(text.size());
    return llama_tokenize(llama_model_get_vocab(&model), text.data(), static_cast<int>(text.size()),
                          tokens.data(), static_cast<int>(tokens.size()), false, true);
}

/// Text of so many short words, most of them one token each.
std::string words(int count)
{
    constexpr std::array<std::string_view, 8> some = {" time", " people", " work",  " house",
                                                      " city", " book",   " water", " year"};
    std::string text;
    for (int i = 0; i < count; ++i)
        text += some[static_cast<std::size_t>(i) % some.size()];
    return text;
}

} // namespace

Prompt prompt(const std::filesystem::path& model, int tokens)
{
    llama_log_set([](ggml_log_level, const char*, void*) {}, nullptr);
    llama_model_params parameters = llama_model_default_params();
    parameters.vocab_only = true;
    const LlamaHandles::Model vocabulary{llama_model_load_from_file(model.c_str(), parameters)};
    if (!vocabulary)
        throw std::runtime_error("Cannot load the model.");
    for (int wordCount = tokens; wordCount > 0;) {
        Prompt prompt{words(wordCount), 0};
        prompt.tokens = countTokens(*vocabulary, ChatPrompt::text(systemText, prompt.user));
        if (prompt.tokens <= tokens)
            return prompt;
        wordCount -= prompt.tokens - tokens;
    }
    throw std::runtime_error("The prompt cannot be that short.");
}

Speeds speeds(LlamaEngine& engine, const std::filesystem::path& model, const Prompt& prompt,
              int answerTokens)
{
    std::vector<Clock::time_point> updates;
    updates.reserve(static_cast<std::size_t>(answerTokens));
    const Clock::time_point begin = Clock::now();
    engine.generate(model, systemText, prompt.user, answerTokens, CancelToken{},
                    [&](const std::string&) { updates.push_back(Clock::now()); });
    const Clock::time_point end = Clock::now();
    if (std::ssize(updates) != answerTokens)
        throw std::runtime_error("The model does not answer one character a token.");
    // The first token is sampled from the prompt; every token is evaluated after its update.
    const Seconds promptTime = updates.front() - begin;
    const Seconds answerTime = end - updates.front();
    return {prompt.tokens / promptTime.count(), answerTokens / answerTime.count()};
}

/// Seconds from cancel() to the return of one call, or less than nothing if it returned before.
static double cancelLatency(LlamaEngine& engine, const std::filesystem::path& model,
                            const Prompt& prompt, Phase phase, Seconds delay)
{
    constexpr int answerTokens = 1024; // so many that generating goes on until it is cancelled
    CancelToken token;
    std::promise<void> answers;
    bool hasAnswered = false;
    auto call = std::async(std::launch::async, [&] {
        engine.generate(model, systemText, prompt.user, answerTokens, token,
                        [&](const std::string&) {
                            if (!std::exchange(hasAnswered, true))
                                answers.set_value();
                        });
        return Clock::now();
    });
    if (phase == Phase::generates) {
        const std::future<void> firstAnswer = answers.get_future();
        const auto isOver = [](const auto& future) {
            return future.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready;
        };
        while (!isOver(firstAnswer) && !isOver(call)) // a call that fails never answers
            continue;
    }
    std::this_thread::sleep_for(delay);
    const Clock::time_point begin = Clock::now();
    token.cancel();
    const Seconds latency = call.get() - begin;
    const bool wasTooLate = phase == Phase::evaluatesPrompt && hasAnswered;
    return wasTooLate ? -1 : latency.count();
}

std::vector<double> cancelLatencies(LlamaEngine& engine, const std::filesystem::path& model,
                                    const Prompt& prompt, Phase phase, double phaseSeconds,
                                    std::size_t tries)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> delay(0, phaseSeconds);
    std::vector<double> latencies;
    while (latencies.size() < tries) {
        const double latency = cancelLatency(engine, model, prompt, phase, Seconds(delay(random)));
        if (latency >= 0)
            latencies.push_back(latency);
    }
    return latencies;
}

} // namespace EngineRun
