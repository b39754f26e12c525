#include "WordAccuracy.h"

#include <algorithm>
#include <numeric>
#include <sstream>

namespace WordAccuracy {

static std::size_t editDistance(const std::vector<std::string>& a,
                                const std::vector<std::string>& b)
{
    // The distances of the first words of a to every beginning of b.
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

double of(std::string_view text, const std::vector<std::string>& words)
{
    std::istringstream stream{std::string(text)};
    std::vector<std::string> found;
    for (std::string word; stream >> word;)
        found.push_back(word);
    return 1 - static_cast<double>(editDistance(words, found)) / static_cast<double>(words.size());
}

} // namespace WordAccuracy
