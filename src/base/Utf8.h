#pragma once

#include <string>
#include <string_view>

/// Turns bytes from outside into valid UTF-8 before any other code sees them. Every function is
/// linear in its input and may be called from any thread.
namespace Utf8 {

/// Whether `bytes` is well-formed UTF-8 (no overlong form, no surrogate, no truncated character).
bool isValid(std::string_view bytes);

/// `bytes`, each read as one Latin-1 character.
std::string fromLatin1(std::string_view bytes);

/// `bytes` unchanged if they are valid UTF-8, otherwise fromLatin1(). A leading U+FEFF (byte order
/// mark) is kept. Throws nothing but std::bad_alloc.
std::string decoded(std::string bytes);

} // namespace Utf8
