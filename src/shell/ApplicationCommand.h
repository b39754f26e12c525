#pragma once

#include <string>

/// `pithwise` itself: the tray application. Main thread, before any other is started; each returns
/// the exit status of the process and throws AppError.
namespace ApplicationCommand {

/// Runs the application until the user quits, with the file `model` in place of the downloaded one
/// unless it is empty. Where the application runs already, shows or hides its popover instead.
int run(const std::string& model);

/// Shows or hides the popover of the running application.
int toggle();

/// Whether there is a running application, which has now been asked to do what the hotkey does.
/// Leaves no thread behind.
bool askForHotkey();

} // namespace ApplicationCommand
