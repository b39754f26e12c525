#pragma once

#include <string>
#include <string_view>

/// White space is the Unicode property White_Space (spaces, tabs, every line and paragraph
/// separator). Text is valid UTF-8; every function is linear and may be called from any thread.
namespace WhiteSpace {

/// `text` without the white space at both ends; a view into `text`.
std::string_view trimmed(std::string_view text);

/// `text` without the tabs and space characters (Unicode's category Zs) at both ends; line breaks
/// of every kind stay. A view into `text`.
std::string_view trimmedBlanks(std::string_view text);

/// The form in which text reaches the model, made in these steps, one after another: "\r\n" becomes
/// "\n"; U+00A0 becomes a space; three or more line feeds become two; runs of spaces become one;
/// both ends are trimmed. Not idempotent: "a\r\r\nb" becomes "a\r\nb".
std::string normalised(std::string_view text);

} // namespace WhiteSpace
