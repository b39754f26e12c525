#pragma once

#include <array>
#include <optional>
#include <string_view>

/// The shape of a summary, in the order in which users choose among them.
enum class SummaryMode { bullets, executive, tldr, actions };

inline constexpr std::array allSummaryModes = {SummaryMode::bullets, SummaryMode::executive,
                                               SummaryMode::tldr, SummaryMode::actions};

/// The mode's label. The user sees it, and it identifies the mode in lists.
std::string_view rawValue(SummaryMode mode);

/// The mode with exactly this label, if there is one.
std::optional<SummaryMode> summaryModeFromRawValue(std::string_view wanted);
