#pragma once

#include <QImage>

#include <filesystem>

/// Pictures as PNG files.
namespace PngFile {

/// Writes `image` to `file`, which must not be there yet, readable and writable by the user alone.
/// Throws std::runtime_error with a sentence for the user and leaves no file then. Blocks; any
/// thread.
void write(const QImage& image, const std::filesystem::path& file);

} // namespace PngFile
