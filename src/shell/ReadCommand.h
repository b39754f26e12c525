#pragma once

#include "SummaryRequest.h"

/// `pithwise read`: prints the text of a source as it is, ending in a line feed.
namespace ReadCommand {

/// Runs the command and returns its exit status. Throws what SourceText throws, and AppError when
/// the output cannot be written. Main thread.
int run(const SummaryRequest& request);

} // namespace ReadCommand
