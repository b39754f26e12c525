#pragma once

#include <string>
#include <vector>

/// The languages in which text is recognised, by Tesseract's names.
namespace RecognitionLanguages {

/// English first, then the languages of the user's locale, each once, whether or not their data is
/// installed. The environment must not be changed during the call.
std::vector<std::string> wanted();

/// What Tesseract calls the language of the POSIX locale `locale` ("de_DE.UTF-8"); empty if it has
/// none, like "C". Any thread.
std::string name(const std::string& locale);

} // namespace RecognitionLanguages
