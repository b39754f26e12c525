#pragma once

#include <string>

/// What the options --selection and --clipboard of a command stand for.
namespace DesktopSource {

enum class Kind { selection, clipboard };

/// The text selected in the application in front, or that on the clipboard. Throws AppError, also
/// when there is none. Main thread, before any other is started.
///
/// Where the selection could be had only by way of the clipboard, a process in the background goes
/// on offering what has been there until another program copies or a clipboard manager takes it.
std::string read(Kind kind);

/// The same for the selection, but empty where nothing is selected.
std::string selection();

} // namespace DesktopSource
