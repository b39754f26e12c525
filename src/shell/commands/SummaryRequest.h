#pragma once

#include "DesktopSource.h"
#include "ScreenGrab.h"
#include "SummaryLength.h"
#include "SummaryMode.h"

#include <optional>
#include <string>

/// What the commands `summarize`, `read` and `plan` are asked for on the command line.
struct SummaryRequest
{
    std::string source; // as for SourceText; unused if one of the next two is set
    std::optional<ScreenGrab::Kind> capture;
    std::optional<DesktopSource::Kind> desktop;
    std::string model; // a file's path; empty for the downloaded one
    SummaryMode mode = SummaryMode::bullets;
    SummaryLength length = SummaryLength::balanced;
    bool isCopied = false; // the summary, onto the clipboard
};
