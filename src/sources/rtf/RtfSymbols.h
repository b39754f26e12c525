#pragma once

#include <string_view>

/// Fonts that show symbols in the place of letters.
namespace RtfSymbols {

/// The code page (symbolFont or dingbats) of the font `name`, 0 for a font with ordinary letters.
int codePage(std::string_view name);

/// The character that `code` shows in a font of this code page. `code` is a byte, the private use
/// character for a byte (U+F000 and the byte), or the private use character for an ornament.
char16_t character(char16_t code, int codePage);

} // namespace RtfSymbols
