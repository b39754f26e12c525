#include "Figure.h"
#include "HTMLText.h"
#include "ResultRow.h"
#include "SamplePage.h"

#include <string>
#include <vector>

namespace {

/// Seconds that reducing `page` takes, the median of five after one to warm up.
double reducing(const std::string& page)
{
    const auto reduce = [&page] { static_cast<void>(HTMLText::readerText(page)); };
    reduce();
    std::vector<double> times;
    for (int round = 0; round < 5; ++round)
        times.push_back(Figure::seconds(reduce));
    return Figure::median(times);
}

} // namespace

/// How fast pages become text, and whether a hostile one takes long.
int main()
{
    for (const std::size_t kilobytes : {200, 2000}) {
        const std::string page = SamplePage::news(kilobytes * 1000);
        const double rate = static_cast<double>(page.size()) / 1e6 / reducing(page);
        ResultRow::print("readerText, news page of " + std::to_string(kilobytes) + " KB",
                         Figure::fixed(rate, 1) + " MB/s", ">= 30 MB/s", rate >= 30);
    }
    for (const SamplePage::Hostile& kind : SamplePage::hostileKinds()) {
        const double time = reducing(SamplePage::hostile(kind, 2'000'000));
        ResultRow::print("readerText, 2 MB of " + std::string(kind.name),
                         Figure::fixed(time, 3) + " s", "< 0.1 s", time < 0.1);
    }
    return 0;
}
