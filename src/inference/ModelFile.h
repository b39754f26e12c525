#pragma once

#include <filesystem>
#include <string_view>

/// Where the language model lives on disk. Every function may be called from any thread.
namespace ModelFile {

constexpr std::string_view name = "Qwen2.5-1.5B-Instruct-Q4_K_M.gguf";

/// $XDG_DATA_HOME/Pithwise, by default ~/.local/share/Pithwise. Every call also creates the folder.
/// If that fails, nothing is thrown here; it shows when the folder is used. Throws AppError if
/// neither XDG_DATA_HOME nor HOME names a folder.
std::filesystem::path directory();

/// The path of the model: `name` in directory().
std::filesystem::path path();

} // namespace ModelFile
