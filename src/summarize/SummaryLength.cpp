#include "SummaryLength.h"

#include <cstdlib>

std::string_view label(SummaryLength length)
{
    constexpr std::array<std::string_view, allSummaryLengths.size()> labels = {"Brief", "Balanced",
                                                                               "Detailed"};
    return labels.at(static_cast<std::size_t>(length));
}

SummaryLength summaryLengthAt(std::size_t position)
{
    if (position >= allSummaryLengths.size())
        std::abort(); // a mistake of ours, never input
    return allSummaryLengths.at(position);
}
