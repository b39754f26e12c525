#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Reads Rich Text Format as plain text. Any thread.
namespace RichText {

/// The text of the RTF file, or of the RTFD folder (a folder with the text in its TXT.rtf), at
/// `path`. Throws AppError. Blocks.
std::string read(const std::filesystem::path& path);

/// The text of the RTF document `rtf`, as valid UTF-8. Paragraphs end in line feeds. Throws
/// AppError if `rtf` does not begin like an RTF document; everything after the beginning is
/// tolerated. Linear.
std::string plainText(std::string_view rtf);

} // namespace RichText
