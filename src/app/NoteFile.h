#pragma once

#include <filesystem>
#include <string_view>

/// A file that grows by whole entries.
namespace NoteFile {

/// Adds `entry` at the end of `file`, or makes the file of `header` and `entry` where it is missing
/// or may not be written to, for the user alone. Symbolic links are followed, but no folder is made
/// where one leads. Requires: the folder is there.
///
/// Processes that do this at once in a folder wait for each other. An entry that comes out short is
/// taken back; a reader sees a new file whole or not at all. Throws std::system_error, or
/// std::runtime_error with a sentence.
void append(const std::filesystem::path& file, std::string_view header, std::string_view entry);

} // namespace NoteFile
