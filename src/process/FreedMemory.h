#pragma once

/// Memory that the process has freed and its allocator keeps for later.
namespace FreedMemory {

/// Gives it back to the system. Takes some milliseconds, in which other threads may have to wait
/// for memory. Any thread.
void giveBack();

} // namespace FreedMemory
