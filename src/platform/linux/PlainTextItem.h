#pragma once

#include "Pasteboard.h"

/// Text as X11 programs exchange it.
namespace PlainTextItem {

/// `text`, in UTF-8, under each of the names that programs ask for; as STRING only where Latin-1
/// has all its characters.
Pasteboard::Item of(std::string text);

} // namespace PlainTextItem
