#include "HTMLText.h"
#include "ResultRow.h"
#include "SamplePage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>

namespace {

/// Seconds that reducing `page` takes, the median of five after one to warm up.
double seconds(const std::string& page)
{
    using Clock = std::chrono::steady_clock;
    std::array<double, 5> times{};
    static_cast<void>(HTMLText::readerText(page));
    for (double& time : times) {
        const auto begin = Clock::now();
        static_cast<void>(HTMLText::readerText(page));
        time = std::chrono::duration<double>(Clock::now() - begin).count();
    }
    std::sort(times.begin(), times.end());
    return times[2];
}

std::string formatted(const char* format, double value)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, value);
    return buffer.data();
}

} // namespace

/// How fast pages become text, and whether a hostile one takes long.
int main()
{
    for (const std::size_t kilobytes : {200, 2000}) {
        const std::string page = SamplePage::news(kilobytes * 1000);
        const double rate = static_cast<double>(page.size()) / 1e6 / seconds(page);
        ResultRow::print("readerText, news page of " + std::to_string(kilobytes) + " KB",
                         formatted("%.1f MB/s", rate), ">= 30 MB/s", rate >= 30);
    }
    for (const SamplePage::Hostile& kind : SamplePage::hostileKinds()) {
        const double time = seconds(SamplePage::hostile(kind, 2'000'000));
        ResultRow::print("readerText, 2 MB of " + std::string(kind.name), formatted("%.3f s", time),
                         "< 0.1 s", time < 0.1);
    }
    return 0;
}
