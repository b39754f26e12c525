#include "GreyScaling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace GreyScaling {

namespace {

/// The two neighbours in a row or column that a pixel of the result takes its grey from.
struct Place
{
    int first;
    int second;
    unsigned share; // of the second, in 256ths
};

std::vector<Place> places(int sourceLength, int length, double factor)
{
    std::vector<Place> result;
    result.reserve(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        const double centre =
            std::clamp((i + 0.5) / factor - 0.5, 0.0, static_cast<double>(sourceLength - 1));
        const int first = static_cast<int>(centre);
        result.push_back({first, std::min(first + 1, sourceLength - 1),
                          static_cast<unsigned>(std::lround((centre - first) * 256))});
    }
    return result;
}

unsigned between(unsigned first, unsigned second, unsigned share)
{
    return first * (256 - share) + second * share;
}

} // namespace

Picture enlarged(Pix* picture, double factor)
{
    const int width = static_cast<int>(pixGetWidth(picture) * factor);
    const int height = static_cast<int>(pixGetHeight(picture) * factor);
    Picture result(pixCreateNoInit(width, height, 8));
    if (!result)
        return result;
    const std::vector<Place> columns = places(pixGetWidth(picture), width, factor);
    const std::vector<Place> rows = places(pixGetHeight(picture), height, factor);
    const l_uint32* const source = pixGetData(picture);
    l_uint32* line = pixGetData(result.get());
    for (const Place& row : rows) {
        const l_uint32* const above = source + std::ptrdiff_t{row.first} * pixGetWpl(picture);
        const l_uint32* const below = source + std::ptrdiff_t{row.second} * pixGetWpl(picture);
        for (int x = 0; x < width; ++x) {
            const Place& column = columns[static_cast<std::size_t>(x)];
            const unsigned left = between(GET_DATA_BYTE(above, column.first),
                                          GET_DATA_BYTE(below, column.first), row.share);
            const unsigned right = between(GET_DATA_BYTE(above, column.second),
                                           GET_DATA_BYTE(below, column.second), row.share);
            SET_DATA_BYTE(
                line, x, static_cast<l_uint8>((between(left, right, column.share) + 0x8000) >> 16));
        }
        line += pixGetWpl(result.get());
    }
    return result;
}

Picture limited(Picture picture, int mostSide, double mostPixels)
{
    const double width = pixGetWidth(picture.get());
    const double height = pixGetHeight(picture.get());
    const double factor =
        std::min(mostSide / std::max(width, height), std::sqrt(mostPixels / (width * height)));
    if (factor >= 1)
        return picture;
    const auto shortened = [factor](double length) {
        return std::max(1, static_cast<int>(length * factor));
    };
    return Picture(pixScaleToSize(picture.get(), shortened(width), shortened(height)));
}

} // namespace GreyScaling
