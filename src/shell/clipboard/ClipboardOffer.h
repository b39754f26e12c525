#pragma once

#include "Pasteboard.h"

#include <string>
#include <vector>

/// Puts contents on the clipboard that outlive the program.
namespace ClipboardOffer {

/// Puts `text` (UTF-8) on the clipboard and returns when it can be pasted. A process in the
/// background goes on offering it until another program copies, unless a clipboard manager takes it
/// over. Throws AppError. Any thread, even while others are running.
void put(const std::string& text);

/// Like put(text), for `items`, the whole contents of a clipboard.
void put(const std::vector<Pasteboard::Item>& items);

/// The hidden command of the program that this process is.
constexpr const char* command = "offer-clipboard";

/// What it does: offers its standard input, a text or else ClipboardContents, and tells on its
/// standard output when it does. Returns the exit status.
int serve(bool isText);

} // namespace ClipboardOffer
