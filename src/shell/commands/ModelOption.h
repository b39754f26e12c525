#pragma once

#include <string>

/// What a command's option --model asks for. `model` is the path that the user gave, empty without
/// the option.
namespace ModelOption {

/// Throws AppError if the user named a file that is not there.
void requireFile(const std::string& model);

} // namespace ModelOption
