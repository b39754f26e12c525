#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Rich Text Format as plain text. Any thread.
namespace RichText {

/// The text of the RTF file, or of the RTFD folder (a folder with the text in its TXT.rtf), at
/// `path`. Throws AppError. Blocks.
std::string read(const std::filesystem::path& path);

/// The text of the RTF document `rtf`, valid UTF-8, paragraphs ending in line feeds. Throws
/// AppError where `rtf` does not begin like one; everything after that is tolerated. Linear.
std::string plainText(std::string_view rtf);

} // namespace RichText
