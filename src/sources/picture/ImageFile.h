#pragma once

#include <QImage>

#include <filesystem>

/// Reads picture files: PNG, JPEG, HEIC, TIFF, GIF, BMP.
namespace ImageFile {

/// The picture in the file at `path`, upright as the camera was held. Throws AppError "Could not
/// read the image.", also for one of more than 256 megapixels, before memory is taken for it.
/// Blocks; any thread.
QImage load(const std::filesystem::path& path);

} // namespace ImageFile
