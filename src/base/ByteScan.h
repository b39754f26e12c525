#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Finds the next byte of interest eight bytes at a time, for the fast paths over text that is
/// mostly ASCII. The arithmetic is Mycroft's test for a zero byte in a word.
namespace ByteScan {

static_assert(std::endian::native == std::endian::little, "The first byte must be the lowest.");

using Word = std::uint64_t;
constexpr std::size_t wordSize = sizeof(Word);

/// A word in which all eight bytes are `byte`.
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

/// The position of the first byte from `from` on that `marks` picks out, text.size() if there is
/// none. `marks` gets a pointer to eight bytes and returns a word in which the highest bit of each
/// byte of interest is set. It may also read the `lookBehind` bytes before the pointer. The last
/// few bytes of `text` are copied for it and filled up with a letter. Requires: lookBehind <= from
/// <= text.size().
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

/// The position of the first byte from `from` on that is not ASCII, else text.size().
inline std::size_t findNonAscii(std::string_view text, std::size_t from)
{
    return find(text, from, [](const char* bytes) { return load(bytes) & repeated(0x80); });
}

/// The position of the first byte from `from` on that is a carriage return or not ASCII, else
/// text.size().
inline std::size_t findNonAsciiOrReturn(std::string_view text, std::size_t from)
{
    return find(text, from, [](const char* bytes) {
        const Word word = load(bytes);
        return (word & repeated(0x80)) | zeroBytes(word ^ repeated('\r'));
    });
}

} // namespace ByteScan
