#pragma once

#include <QString>

#include <exception>
#include <string>
#include <string_view>

/// Converts text between the interface and the rest of the program. Linear; any thread.
namespace QtText {

/// Converts `text` (valid UTF-8) and keeps a leading U+FEFF.
QString fromUtf8(std::string_view text);

/// Converts `text` (valid UTF-8) after WhiteSpace::normalised, the form in which AppState accepts
/// sources.
QString normalised(std::string_view text);

/// Converts `text` to valid UTF-8. Lone surrogates, which are no characters, are replaced.
std::string toUtf8(QStringView text);

/// What users are told about `error`: its own sentence, or one of ours if memory has run out.
QString sentence(const std::exception& error);

} // namespace QtText
