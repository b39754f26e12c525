#pragma once

/// `pithwise model`: the language model's file. Main thread. Each function returns the command's
/// exit status.
namespace ModelCommand {

/// Prints whether the model is there.
int status();

/// Prints where the model is, or would be.
int path();

/// Downloads the model with a progress bar on standard error, and replaces one that is there.
/// Throws AppError if that fails. An interrupt leaves no trace.
int download();

} // namespace ModelCommand
