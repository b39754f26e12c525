#pragma once

#include <string>
#include <vector>

/// The languages that text is recognised in, by Tesseract's names.
namespace RecognitionLanguages {

/// English and then those of the user's locale, each once, whether or not their data is installed.
/// The environment must not be changed meanwhile.
std::vector<std::string> wanted();

/// What Tesseract calls the language of the POSIX locale `locale` ("de_DE.UTF-8"); empty for none,
/// as in "C". Any thread.
std::string name(const std::string& locale);

} // namespace RecognitionLanguages
