#pragma once

#include <QImage>

/// Pictures in shades of grey, as text is recognised in them.
namespace GreyPicture {

/// `image` in QImage::Format_Grayscale8. What is transparent becomes white, or black where light
/// content is drawn on it. Throws std::bad_alloc. Any thread.
QImage of(const QImage& image);

} // namespace GreyPicture
