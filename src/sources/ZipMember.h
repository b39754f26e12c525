#pragma once

#include <optional>
#include <string>
#include <string_view>

class RegularFile;

/// One file out of a ZIP archive. Any thread.
namespace ZipMember {

/// The content of the first member called exactly `name`. Nothing where there is none, where it is
/// encrypted, damaged (but for its checksum) or longer than the archive says, or where it has more
/// than RegularFile::mostBytes, which is noticed before they are unpacked. Blocks.
std::optional<std::string> read(const RegularFile& archive, std::string_view name);

/// The same of an archive in memory.
std::optional<std::string> read(std::string_view archive, std::string_view name);

} // namespace ZipMember
