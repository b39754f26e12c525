#include "ControlCharacters.h"

#include <array>

namespace ControlCharacters {

namespace {

/// Characters of more than one byte that differ only in their last byte.
struct Range
{
    std::string_view begin; // all bytes but the last
    unsigned char first;
    unsigned char last;
};

constexpr std::array<Range, 3> longRanges = {{
    {"\xC2", 0x80, 0x9F},     // C1
    {"\xE2\x80", 0xAA, 0xAE}, // embeddings and overrides
    {"\xE2\x81", 0xA6, 0xA9}, // isolates
}};

} // namespace

std::size_t lengthAt(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80)
        return first < 0x20 || first == 0x7F ? 1 : 0;
    for (const Range& range : longRanges) {
        const std::size_t length = range.begin.size();
        if (!text.starts_with(range.begin) || text.size() == length)
            continue;
        const auto byte = static_cast<unsigned char>(text[length]);
        if (byte >= range.first && byte <= range.last)
            return length + 1;
    }
    return 0;
}

} // namespace ControlCharacters
