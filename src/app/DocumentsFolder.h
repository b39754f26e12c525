#pragma once

#include <filesystem>

/// The user's folder for documents.
namespace DocumentsFolder {

/// As the desktop has it (user-dirs.dirs), else ~/Documents; the home folder itself for users who
/// have turned the folder off. Absolute; it need not be there. Throws AppError where there is no
/// home folder. Any thread.
std::filesystem::path path();

} // namespace DocumentsFolder
