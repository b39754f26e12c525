#pragma once

#include <filesystem>

/// The user's home folder.
namespace HomeFolder {

/// As the variable HOME has it. Throws AppError where that names no folder: what is kept below it
/// would end up at the root. Any thread.
std::filesystem::path path();

} // namespace HomeFolder
