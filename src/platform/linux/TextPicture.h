#pragma once

#include "Picture.h"
#include "TextRecognizer.h"

/// Pictures as Tesseract reads them best and fastest. Any thread.
namespace TextPicture {

struct Prepared
{
    /// Null where all is of one shade.
    Picture picture;
    /// How many pieces could be letters.
    std::size_t letterCount = 0;
};

/// `image` as dark text on a light ground, faint and small text made clearer, no side longer than
/// Tesseract takes. Throws std::bad_alloc.
Prepared prepared(const TextRecognizer::GreyImage& image);

/// `image` as it is, but for what Tesseract does not take. Throws std::bad_alloc.
Picture plain(const TextRecognizer::ColourImage& image);

} // namespace TextPicture
