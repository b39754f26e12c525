#pragma once

#include "Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// What every fuzzer does with the bytes it gets and with the text that comes of them.
namespace FuzzInput {

inline std::string bytes(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// As every reader gets text from outside.
inline std::string text(const std::uint8_t* data, std::size_t size)
{
    return Utf8::decoded(bytes(data, size));
}

/// Ends the process, which the fuzzer takes for a finding.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace FuzzInput
