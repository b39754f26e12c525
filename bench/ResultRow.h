#pragma once

#include <iostream>
#include <string_view>

/// One line of the table that scripts/bench puts together, its columns separated by tabs.
namespace ResultRow {

/// A figure that has a target.
inline void print(std::string_view what, std::string_view figure, std::string_view target, bool met)
{
    std::cout << what << '\t' << figure << '\t' << target << '\t' << (met ? "ok" : "missed")
              << std::endl;
}

/// A figure that has none.
inline void print(std::string_view what, std::string_view figure)
{
    std::cout << what << '\t' << figure << "\t-\t-" << std::endl;
}

} // namespace ResultRow
