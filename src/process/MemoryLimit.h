#pragma once

#include <cstdint>
#include <string>

/// A bound on what a process takes of the machine's memory.
namespace MemoryLimit {

/// From now on the system gives this process no more than `bytes` for its data, those it has
/// included. Where it needs more it ends with `status` and `sentence` on standard output, whatever
/// library asks for it and whatever that does without; but for a single request that is much larger
/// than what is left, with which a library may end the process in its own way. Before there are
/// other threads.
void set(std::uint64_t bytes, std::string sentence, int status);

} // namespace MemoryLimit
