#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

/// What all benchmarks make of their measurements.
namespace Figure {

/// `value` with so many decimals.
inline std::string fixed(double value, int decimals)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

/// Requires: there are values.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// The smallest of the values that at least `share` of them do not exceed. Requires: there are
/// values, and 0 < share <= 1.
inline double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    const auto rank = std::ceil(share * static_cast<double>(values.size()));
    return values[static_cast<std::size_t>(rank) - 1];
}

/// The time that `action` takes.
template <typename Action>
double seconds(Action action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace Figure
