#pragma once

#include <filesystem>
#include <string>

class QImage;
class TextRecognizer;

/// The text in pictures. Every function blocks, for seconds with a full page, and may be called
/// from any thread.
namespace OCR {

/// The recognised lines of `image`, in the recogniser's order, joined with line feeds; empty where
/// there is no text. Throws the recogniser's error (a std::runtime_error).
std::string recognize(const QImage& image);

/// The same with a recogniser that is there already, for several pictures in a row.
std::string recognize(const QImage& image, TextRecognizer& recognizer);

/// The text in the image file `imageAt`. Throws AppError "Could not read the image." and the
/// recogniser's error.
std::string recognize(const std::filesystem::path& imageAt);

} // namespace OCR
