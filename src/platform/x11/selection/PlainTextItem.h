#pragma once

#include "Pasteboard.h"

/// Plain text in the forms in which X11 programs exchange it.
namespace PlainTextItem {

/// An item with `text` (UTF-8) under each of the names that programs ask for. STRING is among them
/// only if Latin-1 has all of its characters.
Pasteboard::Item of(std::string text);

} // namespace PlainTextItem
