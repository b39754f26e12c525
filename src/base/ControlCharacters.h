#pragma once

#include <cstddef>
#include <string_view>

/// Invisible characters that control the program showing a text. Terminals take some of them for
/// commands; others change the writing direction, so that a text is read as what it is not.
namespace ControlCharacters {

/// The length in bytes of the control character that `text` begins with, 0 if it begins with any
/// other character. Control characters are C0 (tabs and line breaks too), delete, C1, and the
/// embeddings, overrides and isolates of the writing direction. The direction marks are not among
/// them, because they affect nothing but their neighbours. Requires: `text` is UTF-8 and not empty.
/// Any thread.
std::size_t lengthAt(std::string_view text);

} // namespace ControlCharacters
