#pragma once

#include "SummaryRequest.h"

/// `pithwise read`: prints the text of a source unchanged, with a line feed at its end.
namespace ReadCommand {

/// Runs the command and returns its exit status. Throws what SourceText throws, and AppError if the
/// output cannot be written. Main thread.
int run(const SummaryRequest& request);

} // namespace ReadCommand
