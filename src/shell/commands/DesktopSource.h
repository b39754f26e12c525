#pragma once

#include <string>

/// Reads the sources that a command's options --selection and --clipboard name.
namespace DesktopSource {

enum class Kind { selection, clipboard };

/// The text selected in the application in front, or the text on the clipboard. Throws AppError,
/// also if there is no text. Blocks; any thread.
///
/// If the selection could only be had by way of the clipboard, a process in the background goes on
/// offering what was on the clipboard before. It ends when another program copies or a clipboard
/// manager takes that over.
std::string read(Kind kind);

/// The selected text as read() gets it, but empty if nothing is selected.
std::string selection();

/// The hidden command of the program that the process in the background is.
constexpr const char* command = "grab-selection";

/// What it does: grabs the selection and tells it on its standard output, then stays while the
/// clipboard holds what has been put back, unless a clipboard manager takes that. Returns the exit
/// status. Main thread.
int serveSelection();

} // namespace DesktopSource
