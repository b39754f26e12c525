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

static std::vector<std::string> split(std::string_view text)
{
    std::istringstream stream{std::string(text)};
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

double of(std::string_view text, const std::vector<std::string>& words)
{
    return 1 - static_cast<double>(editDistance(words, split(text))) /
                   static_cast<double>(words.size());
}

std::size_t wordsRight(std::string_view text, const std::vector<std::string>& words)
{
    const std::vector<std::string> found = split(text);
    // The most that agree between the first words and every beginning of those found.
    std::vector<std::size_t> row(found.size() + 1);
    for (const std::string& word : words) {
        std::size_t diagonal = 0;
        for (std::size_t j = 0; j < found.size(); ++j) {
            const std::size_t above = row[j + 1];
            row[j + 1] = word == found[j] ? diagonal + 1 : std::max(above, row[j]);
            diagonal = above;
        }
    }
    return row.back();
}

} // namespace WordAccuracy
