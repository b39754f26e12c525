#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// How much of a summary; the position is what the length control counts in.
enum class SummaryLength { brief, balanced, detailed };

inline constexpr std::array allSummaryLengths = {SummaryLength::brief, SummaryLength::balanced,
                                                 SummaryLength::detailed};

/// What the length control shows.
std::string_view label(SummaryLength length);

/// The length at `position`. Requires: position is 0, 1 or 2; anything else ends the process.
SummaryLength summaryLengthAt(std::size_t position);
