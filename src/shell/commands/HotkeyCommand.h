#pragma once

#include <string>

/// `pithwise hotkey`: does what the global hotkey does and prints the summary.
namespace HotkeyCommand {

struct Request
{
    std::string model; // a file's path; empty for the downloaded one
    bool appendsToNote = false;
    bool copies = false; // the summary, to the clipboard
};

/// Runs the command and returns its exit status. An interrupt keeps the text so far. Throws
/// AppError. Main thread, before any other is started.
int run(const Request& request);

} // namespace HotkeyCommand
