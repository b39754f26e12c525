#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// How well a recognised text agrees with the known one.
namespace WordAccuracy {

/// The share of `words` that needs no change: 1 less the edit distance in words (inserted, left
/// out, replaced) between `words` and those of `text`, by the number of `words`. Case and
/// punctuation count.
double of(std::string_view text, const std::vector<std::string>& words);

/// How many of `words` are in `text`, in the same order.
std::size_t wordsRight(std::string_view text, const std::vector<std::string>& words);

} // namespace WordAccuracy
