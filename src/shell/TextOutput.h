#pragma once

#include <cstdio>
#include <string_view>

/// Text from outside on an output stream. A terminal gets it without control codes, which it could
/// take for commands; a pipe or file gets it as it is. One thread at a time.
namespace TextOutput {

/// Throws AppError when `stream` takes no more.
void write(std::FILE& stream, std::string_view text);

/// Hands everything written to the system. Throws AppError when that or a write before it failed.
void flush(std::FILE& stream);

} // namespace TextOutput
