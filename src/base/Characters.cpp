#include "Characters.h"

#include "ByteScan.h"
#include "GraphemeBreaker.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace Characters {

Prefix prefix(std::string_view text, std::size_t limit)
{
    const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
    GraphemeBreaker breaker;
    Prefix result;
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t next = i;
        UChar32 character = 0;
        U8_NEXT(data, next, text.size(), character);
        if (breaker.beginsCluster(character)) {
            if (result.characters == limit) {
                result.bytes = i;
                return result;
            }
            ++result.characters;
        }
        i = next;
        // After an ASCII character that is no carriage return, each further one is a character of
        // its own, so the whole run is counted at once.
        if (character < 0x80 && character != '\r') {
            const std::size_t most = std::min(text.size() - i, limit - result.characters);
            const std::size_t end = ByteScan::findNonAsciiOrReturn(text.substr(0, i + most), i);
            result.characters += end - i;
            breaker.skipAscii(text[end - 1]);
            i = end;
        }
    }
    result.bytes = text.size();
    return result;
}

} // namespace Characters
