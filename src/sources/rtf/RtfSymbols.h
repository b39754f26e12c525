#pragma once

#include <string_view>

/// Fonts whose letters are other characters than they seem.
namespace RtfSymbols {

/// The code page (symbolFont, dingbats) of the font `name`, or 0 for one with ordinary letters.
int codePage(std::string_view name);

/// What `code` shows in a font of that code page: a byte, or the private use character that stands
/// for it (U+F000 and the byte) or for an ornament.
char16_t character(char16_t code, int codePage);

} // namespace RtfSymbols
