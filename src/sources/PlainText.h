#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

/// Text as files and pipes hold it: UTF-8, else Latin-1. Nothing is trimmed. Blocks; any thread.
namespace PlainText {

/// The text of the regular file at `path`. Throws AppError "Unsupported file type." for anything
/// else and for a file that cannot be read.
std::string read(const std::filesystem::path& path);

/// Everything `stream` still holds. Throws AppError when it cannot be read.
std::string read(std::FILE& stream);

} // namespace PlainText
