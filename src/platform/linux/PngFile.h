#pragma once

#include "FileDescriptor.h"

#include <QImage>

/// Pictures as PNG files.
namespace PngFile {

/// `image` in a file in memory, which has no name and goes with its last descriptor. Throws
/// std::runtime_error with a sentence for the user. Blocks; any thread.
FileDescriptor of(const QImage& image);

} // namespace PngFile
