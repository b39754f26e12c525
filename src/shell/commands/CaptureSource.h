#pragma once

#include "ScreenGrab.h"

#include <string>

/// Thrown when the user has interrupted a command. It is no error that they need to be told about.
struct Interrupted
{
    int exitStatus;
};

/// Reads the source that a command's option --capture names.
namespace CaptureSource {

/// The text on the screen. Throws AppError, also if there is no text, and what ScreenGrab throws.
/// An interrupt cancels a selection that is under way; Interrupted is thrown then. Main thread,
/// before any other is started.
std::string read(ScreenGrab::Kind kind);

} // namespace CaptureSource
