#pragma once

#include "SummaryRequest.h"

/// `pithwise summarize`: prints the summary of a source.
namespace SummarizeCommand {

/// Runs the command, after downloading the model if it is needed and missing, and returns its exit
/// status. An interrupt keeps the text so far. Throws AppError. Main thread.
int run(const SummaryRequest& request);

} // namespace SummarizeCommand
