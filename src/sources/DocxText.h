#pragma once

#include <string>

/// What a word processor's document says.
namespace DocxText {

/// The text in `xml`, the main part of the document, which is valid UTF-8: paragraphs end in line
/// feeds, tabs and line breaks are kept, every other tag goes, character references are replaced.
/// Nothing is trimmed. Any thread; linear.
std::string plainText(std::string xml);

} // namespace DocxText
