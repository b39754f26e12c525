#pragma once

#include <string>

/// `pithwise` itself: the tray application. Main thread, before any other is started. run() and
/// toggle() return the exit status of the process. All throw AppError.
namespace ApplicationCommand {

/// Runs the application until the user quits, with the model in the file `model`, or the downloaded
/// one if that is empty. If the application is running already, shows or hides its popover instead.
int run(const std::string& model);

/// Shows or hides the popover of the running application.
int toggle();

/// Asks the running application to do what the hotkey does. Returns false if none is running.
/// Leaves no thread behind.
bool askForHotkey();

/// The hidden command of the program that asks in place of it.
constexpr const char* askingCommand = "ask-for-hotkey";

/// What that does: asks, and tells the answer on its standard output.
int tellHotkeyAnswer();

} // namespace ApplicationCommand
