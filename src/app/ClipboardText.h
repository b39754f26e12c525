#pragma once

#include <optional>
#include <string>

/// The plain text on the system's clipboard.
namespace ClipboardText {

/// The text as valid UTF-8, or nothing if there is none. Throws AppError if the application that
/// owns the clipboard does not answer. Blocks for up to two seconds; any thread.
std::optional<std::string> read();

} // namespace ClipboardText
