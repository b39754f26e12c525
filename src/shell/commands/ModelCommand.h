#pragma once

#include <string>

/// `pithwise model`: the language model's file. Main thread. Those that return a number return the
/// command's exit status.
namespace ModelCommand {

/// Prints whether the model is there.
int status();

/// Prints where the model is, or would be.
int path();

/// Downloads the model with a progress bar on standard error, and replaces one that is there.
/// Throws AppError if that fails. An interrupt leaves no trace.
int download();

/// Throws AppError if there is no file at the path `model`, the option --model of other commands,
/// which is empty without that.
void requireFile(const std::string& model);

} // namespace ModelCommand
