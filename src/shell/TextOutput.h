#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Text from outside on an output stream. A terminal gets it without ControlCharacters but tabs and
/// line feeds; a pipe or file gets it as it is. One thread at a time.
namespace TextOutput {

/// Throws AppError when `stream` takes no more.
void write(std::FILE& stream, std::string_view text);

/// Hands everything written to the system. Throws AppError when that or a write before it failed.
void flush(std::FILE& stream);

/// Any bytes as UTF-8 on one line that no terminal takes a command from: all of its
/// ControlCharacters become question marks. For sentences that may quote a file's name.
std::string oneLine(std::string text);

} // namespace TextOutput
