#include "GreyPicture.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace GreyPicture {

namespace {

QImage checked(QImage image)
{
    if (image.isNull())
        throw std::bad_alloc();
    return image;
}

/// Calls `visit(y, pixels)` for each row of `image`, with premultiplied pixels. Converts a strip at
/// a time, because a copy of the whole could take a gigabyte.
template <typename Visit>
void forEachRow(const QImage& image, Visit visit)
{
    constexpr int stripHeight = 64;
    for (int top = 0; top < image.height(); top += stripHeight) {
        const int height = std::min(stripHeight, image.height() - top);
        const QImage strip = checked(checked(image.copy(0, top, image.width(), height))
                                         .convertToFormat(QImage::Format_ARGB32_Premultiplied));
        for (int y = 0; y < height; ++y)
            visit(top + y, reinterpret_cast<const QRgb*>(strip.constScanLine(y)));
    }
}

/// Whether the content of the transparent `image` is light. If most of the picture is opaque, it
/// brings its own ground and the answer is no.
bool isLightOnNothing(const QImage& image)
{
    std::uint64_t light = 0;
    std::uint64_t opaque = 0;
    forEachRow(image, [&](int, const QRgb* pixels) {
        for (int x = 0; x < image.width(); ++x) {
            light += static_cast<std::uint64_t>(qGray(pixels[x]));
            opaque += static_cast<std::uint64_t>(qAlpha(pixels[x]));
        }
    });
    const auto pixelCount =
        static_cast<std::uint64_t>(image.width()) * static_cast<std::uint64_t>(image.height());
    return light > opaque / 2 && opaque < pixelCount * 255 / 2;
}

QImage onGround(const QImage& image, int ground)
{
    QImage grey = checked(QImage(image.size(), QImage::Format_Grayscale8));
    forEachRow(image, [&](int y, const QRgb* pixels) {
        uchar* const row = grey.scanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            const int shade = qGray(pixels[x]) + (255 - qAlpha(pixels[x])) * ground / 255;
            row[x] = static_cast<uchar>(std::min(shade, 255));
        }
    });
    return grey;
}

} // namespace

Ground groundOf(const QImage& image)
{
    return image.hasAlphaChannel() && isLightOnNothing(image) ? Ground::dark : Ground::light;
}

QImage of(const QImage& image, Ground ground)
{
    if (image.hasAlphaChannel())
        return onGround(image, ground == Ground::dark ? 0 : 255);
    return checked(image.convertToFormat(QImage::Format_Grayscale8));
}

} // namespace GreyPicture
