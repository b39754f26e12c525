#pragma once

#include <QString>

#include <exception>
#include <string>
#include <string_view>

/// Text on its way between the interface and the rest of the program. Linear; any thread.
namespace QtText {

/// `text` (valid UTF-8), a leading U+FEFF included.
QString fromUtf8(std::string_view text);

/// The same after WhiteSpace::normalised: the form in which sources are accepted.
QString normalised(std::string_view text);

/// `text` as valid UTF-8; lone surrogates, which are no characters, are replaced.
std::string toUtf8(QStringView text);

/// What users are told of `error`: its own sentence.
QString sentence(const std::exception& error);

} // namespace QtText
