#pragma once

#include "Picture.h"
#include "TextRecognizer.h"

/// Prepares pictures so that Tesseract reads them best and fastest. Any thread.
namespace TextPicture {

struct Prepared
{
    /// Null if the whole image has one shade.
    Picture picture;
    /// How many pieces of the picture could be letters.
    std::size_t letterCount = 0;
};

/// `image` with dark text on a light ground. Faint and small text is made clearer, and no side is
/// longer than Tesseract takes. Throws std::bad_alloc.
Prepared prepared(const TextRecognizer::GreyImage& image);

/// `image` unchanged, or shrunk if it is too large for Tesseract. Throws std::bad_alloc.
Picture plain(const TextRecognizer::ColourImage& image);

} // namespace TextPicture
