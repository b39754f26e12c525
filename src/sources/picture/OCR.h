#pragma once

#include <filesystem>
#include <string>

class QImage;
class TextRecognizer;

/// Reads the text in pictures. Every function blocks, for seconds with a full page, and may be
/// called from any thread.
namespace OCR {

/// The recognised lines of `image`, in the recogniser's order, joined with line feeds. Empty if
/// there is no text. Throws the recogniser's error (a std::runtime_error).
std::string recognize(const QImage& image);

/// Like recognize(image), with the given recogniser, which can be used for several pictures in a
/// row.
std::string recognize(const QImage& image, TextRecognizer& recognizer);

/// The text in the image file `imageAt`. Throws AppError "Could not read the image." and the
/// recogniser's error.
std::string recognize(const std::filesystem::path& imageAt);

} // namespace OCR
