#pragma once

#include <QImage>

#include <cstdint>
#include <string>
#include <string_view>

/// Reads pictures in HEIF files, which cameras write (HEIC).
namespace HeifImage {

/// Whether a file that begins with `bytes` is a HEIF file; 12 bytes suffice to tell. Any thread.
bool isOne(std::string_view bytes);

/// The main picture in a file with the content `bytes`, turned as the file asks. Null if it cannot
/// be read. Null also if it has more than `mostPixels`, before memory is taken for it. Any thread.
QImage decoded(const std::string& bytes, std::int64_t mostPixels);

} // namespace HeifImage
