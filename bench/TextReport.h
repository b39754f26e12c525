#pragma once

#include "SampleText.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Turns the medians of the text benchmarks into rows of the table.
class TextReport : public benchmark::BenchmarkReporter
{
public:
    /// The name under which a benchmark is registered and found again.
    static std::string benchmarkName(std::string_view step, SampleText::Kind kind, int megabytes);

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// One row: the rates of `step` at 1 MB and at 10 MB, and how many times 1 MB the 10 MB cost;
    /// nothing where one of the two has not run.
    void printRow(std::string_view step, SampleText::Kind kind) const;

private:
    std::map<std::string, double> m_rates; // median bytes a second by benchmark name
};
