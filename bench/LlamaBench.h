#pragma once

#include "EngineRun.h"

#include <filesystem>

/// llama.cpp's own benchmark, run as a program with the engine's settings.
namespace LlamaBench {

/// Runs `program` over a prompt of `promptTokens` and over `answerTokens` generated after as many,
/// once each after its own warm-up. Throws std::runtime_error when it fails.
EngineRun::Speeds speeds(const std::filesystem::path& program, const std::filesystem::path& model,
                         int promptTokens, int answerTokens);

} // namespace LlamaBench
