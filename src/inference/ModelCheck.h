#pragma once

#include <filesystem>

/// Looks into a model file for what would lead llama.cpp, while it loads or evaluates the model, to
/// end the process, never to return, or to take all of the memory. It need not find every damage:
/// most of it llama.cpp reports by itself.
namespace ModelCheck {

/// Whether the file at `path` may be given to llama.cpp. Reads its metadata only.
bool isLoadable(const std::filesystem::path& path);

} // namespace ModelCheck
