#pragma once

#include "Pasteboard.h"

#include <string>
#include <vector>

/// Contents of the clipboard that outlive the program.
namespace ClipboardOffer {

/// Puts `text`, in UTF-8, on the clipboard and returns when it can be pasted. A process in the
/// background goes on offering it until another program copies, unless a clipboard manager takes
/// it. Throws AppError. Any thread, whatever others are running.
void put(const std::string& text);

/// The same with all that is on a clipboard.
void put(const std::vector<Pasteboard::Item>& items);

/// What that process runs, as a hidden command of the program: offers its standard input, a text or
/// else ClipboardContents, and tells on its standard output when it does. Returns the exit status.
int serve(bool isText);

} // namespace ClipboardOffer
