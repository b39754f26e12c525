#pragma once

#include "Picture.h"
#include "TextRecognizer.h"

/// Pictures as Tesseract reads them best and fastest. Any thread.
namespace TextPicture {

/// `image` as dark text on a light ground, small text enlarged, no side longer than Tesseract
/// takes; null where all of `image` is of one shade. Throws std::bad_alloc.
Picture prepared(const TextRecognizer::GreyImage& image);

} // namespace TextPicture
