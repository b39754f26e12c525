#pragma once

#include "Pithwise.h"

#include <string>

/// What the option --model of a command stands for.
namespace ModelOption {

/// Throws AppError where the user named a file that is not there; `model` is empty for none.
void requireFile(const std::string& model);

/// The shared engine, on the model file the user named, or on the downloaded one for an empty name.
Pithwise::Generate engine(const std::string& model);

} // namespace ModelOption
