#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// Reads files as plain text. Only the extension of the name decides how a file is read; its kind
/// is never guessed from its content. Every function blocks, for seconds if text must be
/// recognised. Every function may be called from any thread, returns valid UTF-8, and leaves
/// nothing behind.
namespace DocumentReader {

/// A page of a scan whose text has been recognised.
struct ScannedPage
{
    int index;                       // from 0
    int count;                       // how many pages are recognised in all
    std::optional<std::string> text; // none if the page cannot be drawn
};

/// Called with each page of a scan as soon as its text is known, in any order. It is called on any
/// thread, but by one at a time.
using OnPage = std::function<void(const ScannedPage&)>;

/// The text of `file`. Throws AppError "Unsupported file type." if it is not a regular file or
/// cannot be read, and whatever the reader of its kind throws.
std::string read(const std::filesystem::path& file, const OnPage& onPage = {});

/// How many pages of a scan are recognised, its first ones.
constexpr int mostRecognizedPages = 15;

/// The text of the PDF `file`: its text layer, else what can be recognised on its pages.
/// Throws AppError "Could not open the PDF." and what OCR throws.
std::string readPDF(const std::filesystem::path& file, const OnPage& onPage = {});

/// The text of the DOCX document `file`, with its empty paragraphs. Throws AppError "Could not read
/// the DOCX file.".
std::string readDOCX(const std::filesystem::path& file);

} // namespace DocumentReader
