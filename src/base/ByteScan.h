#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Finds the next byte of interest eight bytes at a time, for the fast paths over text that is
/// mostly ASCII. The arithmetic on words is that of Mycroft's test for a zero byte.
namespace ByteScan {

static_assert(std::endian::native == std::endian::little, "The first byte must be the lowest.");

using Word = std::uint64_t;
constexpr std::size_t wordSize = sizeof(Word);

/// A word of eight times `byte`.
constexpr Word repeated(unsigned char byte)
{
    return Word{0x0101010101010101} * byte;
}

inline Word load(const char* bytes)
{
    Word word = 0;
    std::memcpy(&word, bytes, wordSize);
    return word;
}

/// Marks the zero bytes of `word` by their highest bit. Bytes above the first zero byte may be
/// marked wrongly, so only the first mark counts.
constexpr Word zeroBytes(Word word)
{
    return (word - repeated(1)) & ~word & repeated(0x80);
}

/// The first position from `from` on that `marks` marks, else the end of `text`. `marks` takes a
/// pointer to eight bytes, from which it may also read `lookBehind` bytes backwards. The last few
/// bytes of `text` are copied for it and filled up with a letter. Requires: from >= lookBehind.
template <std::size_t lookBehind = 0, typename Marks>
std::size_t find(std::string_view text, std::size_t from, Marks marks)
{
    std::size_t i = from;
    for (; i + wordSize <= text.size(); i += wordSize) {
        if (const Word marked = marks(text.data() + i); marked != 0)
            return i + static_cast<std::size_t>(std::countr_zero(marked)) / 8;
    }
    if (i == text.size())
        return i;
    char rest[lookBehind + wordSize];
    std::memset(rest, 'x', sizeof rest);
    std::memcpy(rest, text.data() + i - lookBehind, text.size() - i + lookBehind);
    const Word marked = marks(rest + lookBehind);
    const std::size_t found =
        marked != 0 ? i + static_cast<std::size_t>(std::countr_zero(marked)) / 8 : text.size();
    return std::min(found, text.size());
}

/// The first byte from `from` on that is not ASCII.
inline std::size_t findNonAscii(std::string_view text, std::size_t from)
{
    return find(text, from, [](const char* bytes) { return load(bytes) & repeated(0x80); });
}

/// The first byte from `from` on that is not ASCII or is a carriage return.
inline std::size_t findNonAsciiOrReturn(std::string_view text, std::size_t from)
{
    return find(text, from, [](const char* bytes) {
        const Word word = load(bytes);
        return (word & repeated(0x80)) | zeroBytes(word ^ repeated('\r'));
    });
}

} // namespace ByteScan
