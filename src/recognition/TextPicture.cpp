#include "TextPicture.h"

#include "GreyScaling.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace TextPicture {

namespace {

/// The longest side that Tesseract takes, in pixels, less the margin.
constexpr int mostSide = 32767 - 64;

/// In pixels. Larger photographs are shrunk to this size, at which their letters can still be read.
/// Time and memory grow with it.
constexpr double mostPixels = 100e6;

/// In pixels. No picture is enlarged beyond this, which suffices for a screen of 3840 by 2160 at
/// twice its size.
constexpr double mostEnlargedPixels = 36e6;

/// In pixels. Letters that touch the edge are often lost; a margin as wide as small letters keeps
/// them.
constexpr int margin = 10;

/// In pixels. Text is small if its letters (their median, mostly without ascender) are no higher
/// than this, as in fonts of up to about 18 pixels. Larger text is not read more accurately at
/// twice its size.
constexpr int smallLetter = 10;

Picture checked(Pix* picture)
{
    if (picture == nullptr)
        throw std::bad_alloc();
    return Picture(picture);
}

Picture copied(const TextRecognizer::GreyImage& image)
{
    Picture picture = checked(pixCreateNoInit(image.width, image.height, 8));
    l_uint32* line = pixGetData(picture.get());
    const std::uint8_t* row = image.pixels;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x)
            SET_DATA_BYTE(line, x, row[x]);
        line += pixGetWpl(picture.get());
        row += image.rowBytes;
    }
    return picture;
}

/// The heights of those black pieces in `binary` that could be letters, and not specks, rules,
/// frames or pictures.
std::vector<int> letterHeights(Pix* binary)
{
    constexpr int least = 4;
    constexpr int most = 200;
    constexpr int mostWidths = 10; // letters of small text touch each other
    std::vector<int> heights;
    Boxa* boxes = pixConnCompBB(binary, 8);
    for (int i = 0; i < boxaGetCount(boxes); ++i) {
        int width = 0;
        int height = 0;
        boxaGetBoxGeometry(boxes, i, nullptr, nullptr, &width, &height);
        if (height >= least && height <= most && width <= mostWidths * height)
            heights.push_back(height);
    }
    boxaDestroy(&boxes);
    return heights;
}

int median(std::vector<int> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Range
{
    int darkest = 0;
    int lightest = 0;
};

Range range(Pix* picture)
{
    Range result;
    pixGetExtremeValue(picture, 1, L_SELECT_MIN, nullptr, nullptr, nullptr, &result.darkest);
    pixGetExtremeValue(picture, 1, L_SELECT_MAX, nullptr, nullptr, nullptr, &result.lightest);
    return result;
}

/// Gives a picture of few shades the contrast that local thresholding needs. Fewer shades than
/// `leastRange` do not get the full contrast: if there is nothing but the grain of a sheet, it
/// would become marks.
void stretch(Pix* picture)
{
    constexpr int leastRange = 96; // shades
    const Range shades = range(picture);
    pixGammaTRC(picture, picture, 1.0F, std::min(shades.darkest, shades.lightest - leastRange),
                shades.lightest);
}

/// The shade at which the dark half ends and the light half begins, and the mean of the light half.
struct Shades
{
    int threshold;
    int light;
};

Shades shades(Pix* picture)
{
    Shades result{128, 255};
    int dark = 0;
    pixSplitDistributionFgBg(picture, 0, 1, &result.threshold, &dark, &result.light, nullptr);
    return result;
}

Picture enlarged(Picture picture)
{
    constexpr double leastFactor = 1.2; // less only blurs
    const double width = pixGetWidth(picture.get());
    const double height = pixGetHeight(picture.get());
    const double factor = std::min({2.0, mostSide / std::max(width, height),
                                    std::sqrt(mostEnlargedPixels / (width * height))});
    if (factor < leastFactor)
        return picture;
    return checked(GreyScaling::enlarged(picture.get(), factor).release());
}

} // namespace

Prepared prepared(const TextRecognizer::GreyImage& image)
{
    Picture picture = checked(GreyScaling::limited(copied(image), mostSide, mostPixels).release());
    if (const Range whole = range(picture.get()); whole.darkest == whole.lightest)
        return {};
    Picture binary = checked(pixThresholdToBinary(picture.get(), shades(picture.get()).threshold));
    std::vector<int> heights = letterHeights(binary.get());
    pixInvert(binary.get(), binary.get());
    std::vector<int> lightHeights = letterHeights(binary.get());
    binary.reset();
    // Of dark and light, the text is what has more pieces; the other has only the holes in letters.
    if (lightHeights.size() > heights.size()) {
        heights.swap(lightHeights);
        pixInvert(picture.get(), picture.get());
    }
    stretch(picture.get());
    const std::size_t letterCount = heights.size();
    if (letterCount > 0 && median(std::move(heights)) <= smallLetter)
        picture = enlarged(std::move(picture));
    const auto light = static_cast<l_uint32>(shades(picture.get()).light);
    return {checked(pixAddBorder(picture.get(), margin, light)), letterCount};
}

Picture plain(const TextRecognizer::ColourImage& image)
{
    Picture picture = checked(pixCreateNoInit(image.width, image.height, 32));
    l_uint32* line = pixGetData(picture.get());
    const std::uint32_t* row = image.pixels;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x)
            line[x] = row[x] << 8; // Leptonica has the red in the first byte
        line += pixGetWpl(picture.get());
        row += image.rowPixels;
    }
    return checked(GreyScaling::limited(std::move(picture), mostSide, mostPixels).release());
}

} // namespace TextPicture
