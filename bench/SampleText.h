#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// The texts that are measured: always the same for the same kind and size.
namespace SampleText {

enum class Kind { asciiProse, mixedScripts, oneLine, lineFeeds, combiningMarks, carriageReturns };

inline constexpr std::array allKinds = {Kind::asciiProse,     Kind::mixedScripts,
                                        Kind::oneLine,        Kind::lineFeeds,
                                        Kind::combiningMarks, Kind::carriageReturns};

std::string_view name(Kind kind);

/// Valid UTF-8 of exactly `bytes` bytes.
std::string make(Kind kind, std::size_t bytes);

} // namespace SampleText
