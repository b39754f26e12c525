#include "ControlCharacters.h"

#include <array>

namespace ControlCharacters {

namespace {

struct Range
{
    std::string_view first;
    std::string_view last; // has as many bytes
};

constexpr std::array<Range, 3> longRanges = {{
    {"\xC2\x80", "\xC2\x9F"},         // C1
    {"\xE2\x80\xAA", "\xE2\x80\xAE"}, // embeddings and overrides
    {"\xE2\x81\xA6", "\xE2\x81\xA9"}, // isolates
}};

} // namespace

std::size_t lengthAt(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return first < 0x20 || first == 0x7F ? 1 : 0;
    for (const Range& range : longRanges) {
        const std::string_view character = text.substr(0, range.first.size());
        // Bytes of UTF-8 have the order of the characters.
        if (character.size() == range.first.size() && character >= range.first &&
            character <= range.last)
            return character.size();
    }
    return 0;
}

} // namespace ControlCharacters
