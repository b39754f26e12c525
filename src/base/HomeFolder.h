#pragma once

#include <filesystem>

namespace HomeFolder {

/// The folder that the environment variable HOME names. Throws AppError if that is not an absolute
/// path: what is kept below it would end up in the wrong place. Any thread.
std::filesystem::path path();

} // namespace HomeFolder
