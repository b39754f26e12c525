#pragma once

#include <cstdint>

/// How the desktop handles a window of this process, which is given by its id on the desktop. Main
/// thread only. If the desktop does not tell, functions do nothing and answer as if all were well.
namespace OwnWindow {

using Id = std::uint64_t;

/// Keeps a window that is about to be shown out of taskbars and pagers.
void keepOffLists(Id window);

/// Whether the window is on the workspace that the user looks at.
bool isHere(Id window);

/// Moves the window to the workspace that the user looks at.
void bringHere(Id window);

/// Whether a picture of `other`, a window of another process, would show this window in place of
/// what it covers.
bool covers(Id window, std::uint32_t other);

} // namespace OwnWindow
