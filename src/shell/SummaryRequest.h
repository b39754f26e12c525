#pragma once

#include "DesktopSource.h"
#include "ScreenGrab.h"
#include "SummaryLength.h"
#include "SummaryMode.h"

#include <optional>
#include <string>

/// What `summarize` and `plan` are asked for on the command line.
struct SummaryRequest
{
    std::string source; // of a file; unless one of those below is there
    std::optional<ScreenGrab::Kind> capture;
    std::optional<DesktopSource::Kind> desktop;
    std::string model; // a file's path; empty for the downloaded one
    SummaryMode mode = SummaryMode::bullets;
    SummaryLength length = SummaryLength::balanced;
    bool isCopied = false; // the summary, onto the clipboard
};
