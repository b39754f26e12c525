#include "OCR.h"

#include "GreyPicture.h"
#include "ImageFile.h"
#include "TextRecognizer.h"

namespace OCR {

/// Requires an image of QImage::Format_Grayscale8.
static std::string recognizeGrey(const QImage& grey, TextRecognizer& recognizer)
{
    std::string text;
    for (const std::string& line :
         recognizer.lines({grey.constBits(), grey.width(), grey.height(),
                           static_cast<std::size_t>(grey.bytesPerLine())})) {
        if (line.empty())
            continue;
        if (!text.empty())
            text += '\n';
        text += line;
    }
    return text;
}

std::string recognize(const QImage& image)
{
    return recognize(image, *TextRecognizer::create());
}

std::string recognize(const QImage& image, TextRecognizer& recognizer)
{
    if (image.isNull())
        return {};
    return recognizeGrey(GreyPicture::of(image), recognizer);
}

std::string recognize(const std::filesystem::path& imageAt)
{
    // The coloured picture, four times as large, is gone before the recogniser takes its memory.
    const QImage grey = GreyPicture::of(ImageFile::load(imageAt));
    return recognizeGrey(grey, *TextRecognizer::create());
}

} // namespace OCR
