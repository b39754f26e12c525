#pragma once

#include <cstdio>

/// What the program's standard streams are connected to.
namespace Terminal {

/// Whether `stream` is a terminal that a person looks at.
bool isTerminal(std::FILE& stream);

/// Columns of the terminal behind `stream`, 80 where that is not known.
int columns(std::FILE& stream);

} // namespace Terminal
