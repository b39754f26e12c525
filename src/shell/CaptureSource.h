#pragma once

#include "ScreenGrab.h"

#include <string>

/// What the option --capture of a command stands for.
namespace CaptureSource {

/// The text on the screen. Throws AppError, also when there is none, what ScreenGrab throws, and
/// Interrupted, which cancels a selection under way. Main thread, before any other is started.
std::string read(ScreenGrab::Kind kind);

} // namespace CaptureSource
