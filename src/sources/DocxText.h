#pragma once

#include <string>

/// Turns the content of a DOCX document into text.
namespace DocxText {

/// The text in `xml`, the main part of the document (valid UTF-8). Paragraphs end in line feeds,
/// tabs and line breaks are kept, all other tags are dropped, and character references are
/// replaced. Nothing is trimmed. Linear. Any thread.
std::string plainText(std::string xml);

} // namespace DocxText
