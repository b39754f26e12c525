#include "SummaryMode.h"

#include <algorithm>

static constexpr std::array<std::string_view, allSummaryModes.size()> rawValues = {
    "3 Bullets", "Executive", "TL;DR", "Actions"};

std::string_view rawValue(SummaryMode mode)
{
    return rawValues.at(static_cast<std::size_t>(mode));
}

std::optional<SummaryMode> summaryModeFromRawValue(std::string_view rawValue)
{
    const auto* const found = std::find(rawValues.begin(), rawValues.end(), rawValue);
    if (found == rawValues.end())
        return std::nullopt;
    return allSummaryModes.at(static_cast<std::size_t>(found - rawValues.begin()));
}
