#pragma once

#include <string>

/// What HTMLText does, written as its steps are described, one after the other with ICU's regular
/// expressions: as slow as that is, and the measure for the fast ones. Text is valid UTF-8.
namespace ReaderTextBySteps {

std::string readerText(const std::string& html);
std::string decodeEntities(const std::string& text);
std::string withoutTags(const std::string& text);

} // namespace ReaderTextBySteps
