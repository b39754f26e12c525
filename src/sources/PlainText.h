#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

/// Reads text from files and pipes as UTF-8, or as Latin-1 if it is not valid UTF-8. Nothing is
/// trimmed. Blocks; any thread.
namespace PlainText {

/// The text of the regular file at `path`. Throws AppError "Unsupported file type." if it is
/// anything else or cannot be read.
std::string read(const std::filesystem::path& path);

/// Everything that is left to read from `stream`. Throws AppError if it cannot be read.
std::string read(std::FILE& stream);

} // namespace PlainText
