#pragma once

#include <string>

/// What the argument SOURCE of a command stands for.
namespace SourceText {

/// The text of `source`: a file's path, or "-" for standard input. Throws AppError, also when there
/// is nothing in it but white space. Blocks.
std::string read(const std::string& source);

} // namespace SourceText
