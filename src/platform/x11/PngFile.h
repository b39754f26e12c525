#pragma once

#include "FileDescriptor.h"

#include <QImage>

/// Writes pictures as PNG files.
namespace PngFile {

/// `image` in a file in memory that has no name and goes with its last descriptor. Throws
/// std::runtime_error with a sentence for the user. Blocks; any thread.
FileDescriptor of(const QImage& image);

} // namespace PngFile
