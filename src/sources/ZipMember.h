#pragma once

#include <optional>
#include <string>
#include <string_view>

class RegularFile;

/// Reads one file out of a ZIP archive. Any thread.
namespace ZipMember {

/// The content of the first member whose name is exactly `name`. Nothing if there is none, or if it
/// is encrypted, damaged (a wrong checksum does not count) or longer than the archive says. Nothing
/// also if it has more than RegularFile::mostBytes, which is noticed before they are unpacked.
/// Blocks.
std::optional<std::string> read(const RegularFile& archive, std::string_view name);

/// Reads a member of an archive in memory, with the same results as for a file.
std::optional<std::string> read(std::string_view archive, std::string_view name);

} // namespace ZipMember
