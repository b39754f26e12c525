#pragma once

#include <cstddef>
#include <string_view>

/// Writes `bytes` to a descriptor of the operating system, in as many steps as that takes and
/// whatever signals come meanwhile. Returns how many it has written: all, or fewer, and then
/// `errno` says why. Blocks where the descriptor does. Any thread, also in the handler of a signal.
[[nodiscard]] std::size_t writeAll(int descriptor, std::string_view bytes);
