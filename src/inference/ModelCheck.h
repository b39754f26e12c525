#pragma once

#include <filesystem>

/// Finds what in a model file would make llama.cpp end the process, never return, or take all of
/// the memory while it loads or evaluates the model. It need not find every damage, because
/// llama.cpp reports most of it by itself.
namespace ModelCheck {

/// Whether the file at `path` may be given to llama.cpp. Reads its metadata only.
bool isLoadable(const std::filesystem::path& path);

} // namespace ModelCheck
