#include "TextReport.h"

#include "Figure.h"
#include "ResultRow.h"

#include <algorithm>
#include <optional>

/// The rate that the whole text base must reach, in MB/s.
static std::optional<int> targetRate(std::string_view step, SampleText::Kind kind)
{
    if (step == "together" && kind == SampleText::Kind::asciiProse)
        return 500;
    if (step == "together" && kind == SampleText::Kind::mixedScripts)
        return 50;
    return std::nullopt;
}

std::string TextReport::benchmarkName(std::string_view step, SampleText::Kind kind, int megabytes)
{
    std::string name(step);
    name.append(", ").append(SampleText::name(kind));
    return name.append(", ").append(std::to_string(megabytes)).append(" MB");
}

bool TextReport::ReportContext(const Context& /*context*/)
{
    return true;
}

void TextReport::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.aggregate_name == "median")
            m_rates[run.run_name.function_name] = run.counters.at("bytes_per_second").value;
    }
}

void TextReport::printRow(std::string_view step, SampleText::Kind kind) const
{
    constexpr double megabyte = 1e6;
    constexpr double mostGrowth = 12;
    const auto smallRate = m_rates.find(benchmarkName(step, kind, 1));
    const auto largeRate = m_rates.find(benchmarkName(step, kind, 10));
    if (smallRate == m_rates.end() || largeRate == m_rates.end())
        return; // left out by the user's filter
    const double small = smallRate->second / megabyte;
    const double large = largeRate->second / megabyte;
    const double growth = 10 * small / large;
    std::string target = "<= 12 x";
    bool isMet = growth <= mostGrowth;
    if (const std::optional<int> rate = targetRate(step, kind)) {
        target = ">= " + std::to_string(*rate) + " MB/s, " + target;
        isMet = isMet && std::min(small, large) >= *rate;
    }
    std::string what(step);
    what.append(", ").append(SampleText::name(kind));
    ResultRow::print(what,
                     Figure::fixed(small, 0) + " and " + Figure::fixed(large, 0) + " MB/s, " +
                         Figure::fixed(growth, 1) + " x",
                     target, isMet);
}
