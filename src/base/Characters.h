#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

/// User-perceived characters: the extended grapheme clusters of Unicode Standard Annex #29.
/// Text is valid UTF-8; every function is linear in what it reads and may be called from any
/// thread.
namespace Characters {

struct Prefix
{
    std::size_t bytes = 0;
    std::size_t characters = 0;
};

/// The longest prefix of `text` that has at most `limit` characters, with its length in both units.
Prefix prefix(std::string_view text, std::size_t limit);

/// How many characters `text` has.
inline std::size_t count(std::string_view text)
{
    return prefix(text, std::numeric_limits<std::size_t>::max()).characters;
}

} // namespace Characters
