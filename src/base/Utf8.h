#pragma once

#include <string>
#include <string_view>

/// What bytes from outside become before anything else sees them: valid UTF-8. Every function is
/// linear in its input and may be called from any thread.
namespace Utf8 {

/// Whether `bytes` is well-formed UTF-8 (no overlong form, no surrogate, no truncated character).
bool isValid(std::string_view bytes);

/// `bytes` as they are when they are valid UTF-8, else each byte read as one Latin-1 character.
/// A leading U+FEFF stays. Throws std::bad_alloc only.
std::string decoded(std::string bytes);

} // namespace Utf8
