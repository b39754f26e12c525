#pragma once

#include <cstdint>

/// What the desktop does with a window of this process, by the id that it has there. Main thread
/// only; without effect, and as if all were well, where the desktop does not tell.
namespace OwnWindow {

using Id = std::uint64_t;

/// Keeps a window that is about to be shown out of taskbars and pagers.
void keepOffLists(Id window);

/// Whether it is on the workspace that the user looks at.
bool isHere(Id window);

/// Moves it there.
void bringHere(Id window);

/// Whether a picture of `other`, a window of another process, would show it in place of what is
/// below it.
bool covers(Id window, std::uint32_t other);

} // namespace OwnWindow
