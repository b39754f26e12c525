#pragma once

#include <QImage>

/// Turns pictures into the shades of grey in which text is recognised.
namespace GreyPicture {

/// What a transparent picture is laid on.
enum class Ground { light, dark };

/// The ground on which the content of `image` shows: dark if the content is light, else light.
Ground groundOf(const QImage& image);

/// `image` on `ground`, in QImage::Format_Grayscale8. Throws std::bad_alloc. Any thread.
QImage of(const QImage& image, Ground ground);

} // namespace GreyPicture
