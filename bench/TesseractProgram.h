#pragma once

#include <QString>

#include <string>

/// Tesseract's own program, which recognition is compared with.
namespace TesseractProgram {

/// Its path; empty where it is not installed.
QString path();

/// What it prints of the picture `file`, with its defaults but for the threads: one where
/// `isSingle`. Blocks for its whole run. Throws std::runtime_error.
std::string read(const QString& program, const QString& file, bool isSingle);

} // namespace TesseractProgram
