#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// How long a summary is. The length control has these positions, counted from 0.
enum class SummaryLength { brief, balanced, detailed };

inline constexpr std::array allSummaryLengths = {SummaryLength::brief, SummaryLength::balanced,
                                                 SummaryLength::detailed};

/// The text that the length control shows for `length`.
std::string_view label(SummaryLength length);

/// The length at `position`. Requires: position is 0, 1 or 2; anything else ends the process.
SummaryLength summaryLengthAt(std::size_t position);
