#include "ControlCharacters.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

std::size_t ControlCharacters::lengthAt(std::string_view text)
{
    const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t length = 0;
    UChar32 character = 0;
    U8_NEXT(data, length, text.size(), character);
    const bool isControl = u_charType(character) == U_CONTROL_CHAR;
    const bool embeds = character >= 0x202A && character <= 0x202E; // or overrides
    const bool isolates = character >= 0x2066 && character <= 0x2069;
    return isControl || embeds || isolates ? length : 0;
}
