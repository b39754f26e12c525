#pragma once

/// Files that the system makes of the memory of a process that crashes.
namespace CoreDumps {

/// From now on there is none of this process and those it starts, because the texts it works on are
/// in its memory. It can be looked at as before, as the portals of a desktop do.
void forbid();

} // namespace CoreDumps
