#pragma once

#include <cstddef>
#include <string_view>

/// Characters that are not shown but tell whatever shows a text what to do: terminals take them for
/// commands, and those for the direction of text make it read as what it is not.
namespace ControlCharacters {

/// How many bytes the character that `text` begins with has, if it is one of these: C0 (tabs and
/// line breaks too), delete, C1, or an embedding, override or isolate of the writing direction. 0
/// for every other. The marks of direction, which act on nothing but their neighbours, are others.
/// Requires: `text` is UTF-8 and not empty. Any thread.
std::size_t lengthAt(std::string_view text);

} // namespace ControlCharacters
