#include "SummaryMode.h"

#include <algorithm>

static constexpr std::array<std::string_view, allSummaryModes.size()> rawValues = {
    "3 Bullets", "Executive", "TL;DR", "Actions"};

std::string_view rawValue(SummaryMode mode)
{
    return rawValues.at(static_cast<std::size_t>(mode));
}

std::optional<SummaryMode> summaryModeFromRawValue(std::string_view wanted)
{
    const auto* const found = std::ranges::find(allSummaryModes, wanted, rawValue);
    return found == allSummaryModes.end() ? std::nullopt : std::optional(*found);
}
