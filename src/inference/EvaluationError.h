#pragma once

#include "AppError.h"

#include <string>

namespace EvaluationError {

/// llama_decode's code for a batch that does not fit.
constexpr int noRoom = 1;
/// llama_decode's code for a computation that has failed.
constexpr int failed = -3;

/// The error for users: llama.cpp's own messages are not fit for them.
inline AppError of(int code)
{
    return AppError("Model evaluation failed (" + std::to_string(code) + ").");
}

} // namespace EvaluationError
