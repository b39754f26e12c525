#pragma once

#include <filesystem>
#include <string_view>

/// Where the language model lives on disk. Every function may be called from any thread.
namespace ModelFile {

constexpr std::string_view name = "Qwen2.5-1.5B-Instruct-Q4_K_M.gguf";

/// $XDG_DATA_HOME/Pithwise, by default ~/.local/share/Pithwise. Every call also creates the folder;
/// a failure to do so is ignored here and shows in what is done with the folder next. Throws
/// AppError where neither variable names a folder.
std::filesystem::path directory();

/// `directory()` / `name`.
std::filesystem::path path();

} // namespace ModelFile
