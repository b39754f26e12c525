#pragma once

#include "FileDescriptor.h"

#include <string_view>

/// Writing all or nothing.
namespace WholeWrite {

/// Writes `bytes` at the end of `file`, which was opened for that (O_APPEND), in one piece, and
/// closes it. What comes out short is taken back. Goes on to the end also when this process is
/// killed meanwhile, while everything it has locked through descriptors stays so. Throws
/// std::system_error. Any thread.
void append(FileDescriptor file, std::string_view bytes);

} // namespace WholeWrite
