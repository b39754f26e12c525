#pragma once

#include <filesystem>

namespace DocumentsFolder {

/// The folder that the desktop's settings (user-dirs.dirs) name, else ~/Documents. For users who
/// have turned the folder off it is the home folder itself. The path is absolute, but the folder
/// need not exist. Throws AppError if there is no home folder. Any thread.
std::filesystem::path path();

} // namespace DocumentsFolder
