// Compares LlamaEngine with llama.cpp's own llama-bench, and measures how soon it can be cancelled.

#include "EngineRun.h"
#include "Figure.h"
#include "LlamaBench.h"
#include "LlamaEngine.h"
#include "ResultRow.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace {

using EngineRun::Phase;
using EngineRun::Speeds;

struct Options
{
    std::string model;
    std::string llamaBench = PITHWISE_LLAMA_BENCH;
    int rounds = 5;
    int promptTokens = 2048;
    int answerTokens = 128;
    std::size_t cancels = 20; // a phase
};

/// One speed of the engine and of llama-bench, over all rounds.
struct Comparison
{
    std::string what;
    std::vector<double> engine;
    std::vector<double> llamaBench;

    void print() const
    {
        constexpr double leastRatio = 0.98;
        const double speed = Figure::median(engine);
        ResultRow::print("engine, " + what, Figure::fixed(speed, 1) + " tokens/s");
        if (llamaBench.empty())
            return;
        const double ratio = speed / Figure::median(llamaBench);
        ResultRow::print("llama-bench, " + what,
                         Figure::fixed(Figure::median(llamaBench), 1) + " tokens/s");
        ResultRow::print("engine / llama-bench, " + what, Figure::fixed(ratio, 3), ">= 0.98",
                         ratio >= leastRatio);
    }
};

class EngineBench
{
public:
    explicit EngineBench(Options options)
        : m_options(std::move(options)),
          m_prompt(EngineRun::prompt(m_options.model, m_options.promptTokens))
    {}

    void run()
    {
        compareSpeeds();
        printLatency("evaluating a prompt", m_prompt, Phase::evaluatesPrompt,
                     m_prompt.tokens / Figure::median(m_promptSpeed.engine));
        // How long the prompt was hardly matters to the evaluation of one token.
        constexpr int shortPrompt = 128;
        constexpr double generatingSeconds = 2;
        printLatency("generating", EngineRun::prompt(m_options.model, shortPrompt),
                     Phase::generates, generatingSeconds);
    }

private:
    void compareSpeeds()
    {
        std::cerr << "engine-bench: warming up\n";
        engineSpeeds();
        for (int round = 1; round <= m_options.rounds; ++round) {
            std::cerr << "engine-bench: round " << round << " of " << m_options.rounds << "\n";
            const Speeds engine = engineSpeeds();
            m_promptSpeed.engine.push_back(engine.prompt);
            m_generationSpeed.engine.push_back(engine.generation);
            if (m_options.llamaBench.empty())
                continue;
            const Speeds other = LlamaBench::speeds(m_options.llamaBench, m_options.model,
                                                    m_prompt.tokens, m_options.answerTokens);
            m_promptSpeed.llamaBench.push_back(other.prompt);
            m_generationSpeed.llamaBench.push_back(other.generation);
        }
        m_promptSpeed.print();
        m_generationSpeed.print();
        if (m_options.llamaBench.empty())
            ResultRow::print("engine / llama-bench", "no llama-bench found");
    }

    Speeds engineSpeeds()
    {
        return EngineRun::speeds(m_engine, m_options.model, m_prompt, m_options.answerTokens);
    }

    void printLatency(const std::string& what, const EngineRun::Prompt& prompt, Phase phase,
                      double phaseSeconds)
    {
        constexpr double mostSeconds = 0.1;
        std::cerr << "engine-bench: cancelling while " << what << "\n";
        const std::vector<double> latencies = EngineRun::cancelLatencies(
            m_engine, m_options.model, prompt, phase, phaseSeconds, m_options.cancels);
        const double longest = *std::max_element(latencies.begin(), latencies.end());
        ResultRow::print("cancel while " + what + ", longest of " +
                             std::to_string(latencies.size()),
                         Figure::fixed(longest, 3) + " s", "<= 0.1 s", longest <= mostSeconds);
    }

    Options m_options;
    EngineRun::Prompt m_prompt;
    LlamaEngine m_engine;
    Comparison m_promptSpeed{"prompt of " + std::to_string(m_prompt.tokens), {}, {}};
    Comparison m_generationSpeed{std::to_string(m_options.answerTokens) + " generated after " +
                                     std::to_string(m_prompt.tokens),
                                 {},
                                 {}};
};

} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app("Measures the engine on the bench model.", "engine-bench");
    app.add_option("MODEL", options.model, "What bench-model wrote")->required();
    app.add_option("--llama-bench", options.llamaBench, "The program to compare with, may be \"\"");
    app.add_option("--rounds", options.rounds)->check(CLI::PositiveNumber);
    app.add_option("--prompt", options.promptTokens)->check(CLI::Range(128, 3072));
    app.add_option("--generated", options.answerTokens)->check(CLI::Range(2, 512));
    app.add_option("--cancels", options.cancels, "A phase")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, argc, argv);
    try {
        EngineBench(options).run();
    } catch (const std::exception& error) {
        std::cerr << "engine-bench: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
