#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Writes text from outside to an output stream. For a terminal all ControlCharacters but tabs and
/// line feeds are left out; a pipe or file gets the text unchanged. One thread at a time.
namespace TextOutput {

/// Writes `text`. Throws AppError if `stream` takes no more.
void write(std::FILE& stream, std::string_view text);

/// Hands everything written to the system. Throws AppError if that fails or an earlier write has
/// failed.
void flush(std::FILE& stream);

/// `text` (any bytes) as one line of UTF-8 from which no terminal takes a command: all of its
/// ControlCharacters become question marks. For sentences that may quote a file's name.
std::string oneLine(std::string text);

} // namespace TextOutput
