#include "Utf8.h"

#include "ByteScan.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace Utf8 {

bool isValid(std::string_view bytes)
{
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::size_t length = bytes.size();
    std::size_t i = ByteScan::findNonAscii(bytes, 0);
    while (i < length) {
        UChar32 character = 0;
        U8_NEXT(data, i, length, character);
        if (character < 0)
            return false;
        if (character < 0x80)
            i = ByteScan::findNonAscii(bytes, i);
    }
    return true;
}

std::string fromLatin1(std::string_view bytes)
{
    std::string text;
    const auto longer = std::count_if(bytes.begin(), bytes.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0x80) != 0;
    });
    text.reserve(bytes.size() + static_cast<std::size_t>(longer));
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text.push_back(byte);
        } else {
            text.push_back(static_cast<char>(0xC0 | (code >> 6)));
            text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        }
    }
    return text;
}

std::string decoded(std::string bytes)
{
    if (isValid(bytes))
        return bytes;
    return fromLatin1(bytes);
}

} // namespace Utf8
