#pragma once

#include <filesystem>
#include <string>

/// Files as plain text. The extension of the name alone decides how a file is read; its content is
/// never guessed at. Every function blocks, for seconds where text must be recognised, may be
/// called from any thread, returns valid UTF-8, and leaves nothing behind.
namespace DocumentReader {

/// The text of `file`. Throws AppError "Unsupported file type." for what is not a regular file or
/// cannot be read, and whatever the reader of its kind throws.
std::string read(const std::filesystem::path& file);

/// The text of the PDF `file`: its text layer, else what can be recognised on its first 15 pages.
/// Throws AppError "Could not open the PDF." and what OCR throws.
std::string readPDF(const std::filesystem::path& file);

/// The text of the word processor's document `file`, empty paragraphs included. Throws AppError
/// "Could not read the DOCX file.".
std::string readDOCX(const std::filesystem::path& file);

} // namespace DocumentReader
