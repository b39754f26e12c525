#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

class LlamaEngine;

/// What is measured of the engine, all of it through LlamaEngine::generate.
namespace EngineRun {

struct Prompt
{
    std::string user;
    int tokens = 0; // of the whole prompt in ChatML, counted with the model's vocabulary
};

/// A user text whose whole prompt is as near to `tokens` as possible without being longer.
Prompt prompt(const std::filesystem::path& model, int tokens);

/// Tokens a second.
struct Speeds
{
    double prompt = 0;
    double generation = 0;
};

/// Answers `prompt` with `answerTokens` tokens. Throws std::runtime_error when the answer does not
/// come one token a call, as it does from the bench model.
Speeds speeds(LlamaEngine& engine, const std::filesystem::path& model, const Prompt& prompt,
              int answerTokens);

/// The phase of a call in which it is cancelled.
enum class Phase { evaluatesPrompt, generates };

/// Cancels `tries` calls from another thread, each at a random moment of `phase`, which takes
/// about `phaseSeconds`, and returns the seconds from cancel() to the return of each call. Calls
/// that were over before are made again.
std::vector<double> cancelLatencies(LlamaEngine& engine, const std::filesystem::path& model,
                                    const Prompt& prompt, Phase phase, double phaseSeconds,
                                    std::size_t tries);

} // namespace EngineRun
