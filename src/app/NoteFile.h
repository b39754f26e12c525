#pragma once

#include <filesystem>
#include <string_view>

/// A file to which whole entries are appended.
namespace NoteFile {

/// Adds `entry` at the end of `file`. If the file is missing or may not be written to, makes it
/// anew from `header` and `entry`, for the user alone. Symbolic links are followed, but a missing
/// folder that one leads to is not made. Requires: the folder of `file` exists.
///
/// Processes that do this at once in the same folder wait for each other. An entry that could be
/// written only in part is taken back. Other programs see a new file whole or not at all. Throws
/// std::system_error, or std::runtime_error with a sentence. Blocks on the disk, and for up to half
/// a second on another process. Any thread.
void append(const std::filesystem::path& file, std::string_view header, std::string_view entry);

} // namespace NoteFile
