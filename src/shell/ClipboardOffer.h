#pragma once

#include <string>

/// Text on the clipboard that outlives the program.
namespace ClipboardOffer {

/// Puts `text`, in UTF-8, on the clipboard and returns when it can be pasted. A process in the
/// background goes on offering it until another program copies, unless a clipboard manager takes
/// it. Throws AppError. Any thread, whatever others are running.
void put(const std::string& text);

/// What that process runs, as a hidden command of the program: offers its standard input, and tells
/// on its standard output when it does. Returns the exit status.
int serve();

} // namespace ClipboardOffer
