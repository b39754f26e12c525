#pragma once

/// `pithwise model`: the language model's file. Main thread; each returns the command's exit
/// status.
namespace ModelCommand {

/// Prints whether the model is there.
int status();

/// Prints where the model is, or would be.
int path();

/// Downloads the model with a progress bar on standard error, also over one that is there. Throws
/// AppError when it fails; an interrupt leaves no trace.
int download();

} // namespace ModelCommand
