// Measures the passes over a text that come before any model: normalising, counting, cutting.

#include "Characters.h"
#include "Pithwise.h"
#include "TextReport.h"
#include "WhiteSpace.h"

#include <memory>

namespace {

void normalise(const std::string& text)
{
    benchmark::DoNotOptimize(WhiteSpace::normalised(text));
}

void count(const std::string& text)
{
    benchmark::DoNotOptimize(Characters::count(text));
}

void cut(const std::string& text)
{
    benchmark::DoNotOptimize(Pithwise::chunks(text, Pithwise::sectionSize));
}

/// What a run does to its text.
void together(const std::string& text)
{
    const std::string normalised = WhiteSpace::normalised(text);
    count(normalised);
    cut(normalised);
}

struct Step
{
    std::string_view name;
    void (*run)(const std::string& text);
};

constexpr std::array steps = {Step{"normalised", normalise}, Step{"count", count},
                              Step{"chunks", cut}, Step{"together", together}};

void add(const Step& step, SampleText::Kind kind, int megabytes,
         const std::shared_ptr<const std::string>& text)
{
    const auto measure = [run = step.run, text](benchmark::State& state) {
        for (auto unused : state) {
            static_cast<void>(unused);
            run(*text);
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
    };
    benchmark::RegisterBenchmark(TextReport::benchmarkName(step.name, kind, megabytes).c_str(),
                                 measure)
        ->MinTime(0.1)
        ->Repetitions(5)
        ->ReportAggregatesOnly();
}

} // namespace

int main(int argc, char** argv)
{
    // Repetitions in random order: what else the machine does then falls on all alike.
    std::vector<char*> arguments(argv, argv + argc);
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleaving.data());
    int argumentCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&argumentCount, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments.data()))
        return 2;
    for (const SampleText::Kind kind : SampleText::allKinds) {
        for (const int megabytes : {1, 10}) {
            const auto text = std::make_shared<const std::string>(
                SampleText::make(kind, static_cast<std::size_t>(megabytes) * 1'000'000));
            for (const Step& step : steps)
                add(step, kind, megabytes, text);
        }
    }
    TextReport report;
    benchmark::RunSpecifiedBenchmarks(&report);
    for (const Step& step : steps) {
        for (const SampleText::Kind kind : SampleText::allKinds)
            report.printRow(step.name, kind);
    }
    return 0;
}
