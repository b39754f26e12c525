#pragma once

#include <QImage>

/// Pictures in shades of grey, as text is recognised in them.
namespace GreyPicture {

/// What stands behind what is transparent.
enum class Ground { light, dark };

/// The ground that suits `image`: dark where it has light content, else light.
Ground groundOf(const QImage& image);

/// `image` on `ground`, in QImage::Format_Grayscale8. Throws std::bad_alloc. Any thread.
QImage of(const QImage& image, Ground ground);

} // namespace GreyPicture
