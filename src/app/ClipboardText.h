#pragma once

#include <optional>
#include <string>

/// The plain text on the system's clipboard.
namespace ClipboardText {

/// Valid UTF-8; nothing where there is no text. Throws AppError where the application that owns the
/// clipboard does not answer. Blocks for two seconds at most; any thread.
std::optional<std::string> read();

} // namespace ClipboardText
