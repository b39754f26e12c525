#pragma once

#include <QImage>

#include <cstdint>
#include <string>
#include <string_view>

/// Pictures in HEIF files, as cameras write them (HEIC).
namespace HeifImage {

/// Whether a file that begins with `bytes` (12 or more tell) is one. Any thread.
bool isOne(std::string_view bytes);

/// The main picture of the file with this content, turned as the file asks; null where it cannot
/// be read, or has more than `mostPixels`, for which no memory is taken. Any thread.
QImage decoded(const std::string& bytes, std::int64_t mostPixels);

} // namespace HeifImage
