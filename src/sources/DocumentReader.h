#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// Files as plain text. The extension of the name alone decides how a file is read; its content is
/// never guessed at. Every function blocks, for seconds where text must be recognised, may be
/// called from any thread, returns valid UTF-8, and leaves nothing behind.
namespace DocumentReader {

/// A page of a scan that has been recognised.
struct ScannedPage
{
    int index;                       // from 0
    int count;                       // of the pages that are recognised
    std::optional<std::string> text; // none where it cannot be drawn
};

/// Is told each page of a scan as soon as its text is known, in any order. Called on any thread, by
/// one at a time.
using OnPage = std::function<void(const ScannedPage&)>;

/// The text of `file`. Throws AppError "Unsupported file type." for what is not a regular file or
/// cannot be read, and whatever the reader of its kind throws.
std::string read(const std::filesystem::path& file, const OnPage& onPage = {});

/// The text of the PDF `file`: its text layer, else what can be recognised on its first 15 pages.
/// Throws AppError "Could not open the PDF." and what OCR throws.
std::string readPDF(const std::filesystem::path& file, const OnPage& onPage = {});

/// The text of the word processor's document `file`, empty paragraphs included. Throws AppError
/// "Could not read the DOCX file.".
std::string readDOCX(const std::filesystem::path& file);

} // namespace DocumentReader
