#pragma once

#include "SummaryRequest.h"

/// `pithwise summarize`: prints the summary of a source.
namespace SummarizeCommand {

/// Runs the command and returns its exit status. First downloads the model if it is needed and
/// missing. An interrupt keeps the text so far. Throws AppError. Main thread.
int run(const SummaryRequest& request);

} // namespace SummarizeCommand
