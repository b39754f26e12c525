#pragma once

#include "SummaryLength.h"
#include "SummaryMode.h"

#include <string>

/// What `summarize` and `plan` are asked for on the command line.
struct SummaryRequest
{
    std::string source;
    std::string model; // a file's path; empty for the downloaded one
    SummaryMode mode = SummaryMode::bullets;
    SummaryLength length = SummaryLength::balanced;
};
