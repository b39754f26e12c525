#include "OCR.h"

#include "GreyPicture.h"
#include "ImageFile.h"
#include "TextRecognizer.h"

#include <QPainter>

#include <cmath>
#include <cstdint>
#include <new>

namespace OCR {

namespace {

using Reading = TextRecognizer::Reading;

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        if (!line.empty())
            text += (text.empty() ? "" : "\n") + line;
    }
    return text;
}

Reading readGrey(const QImage& grey, TextRecognizer& recognizer)
{
    return recognizer.read({grey.constBits(), grey.width(), grey.height(),
                            static_cast<std::size_t>(grey.bytesPerLine())});
}

/// Reads `image` on white paper, without our preparation of the picture.
Reading readPlainly(const QImage& image, TextRecognizer& recognizer)
{
    QImage page(image.size(), QImage::Format_RGB32);
    if (page.isNull())
        throw std::bad_alloc();
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.drawImage(page.rect(), image, image.rect());
    painter.end();
    return recognizer.readPlainly({reinterpret_cast<const std::uint32_t*>(page.constBits()),
                                   page.width(), page.height(),
                                   static_cast<std::size_t>(page.bytesPerLine()) / 4});
}

void takeBetter(Reading& best, Reading other)
{
    if (other.certainty > best.certainty)
        best = std::move(other);
}

/// Returns the surest reading of `image`. `best` is the reading in grey on `ground`; only if it is
/// doubtful, the other ways are tried too.
Reading bestOf(Reading best, const QImage& image, GreyPicture::Ground ground,
               TextRecognizer& recognizer)
{
    using GreyPicture::Ground;
    if (!best.isDoubtful)
        return best;
    takeBetter(best, readPlainly(image, recognizer));
    // Around letters there can be fringes, lighter or darker than the letters.
    const Ground other = ground == Ground::dark ? Ground::light : Ground::dark;
    const QImage onOther = GreyPicture::of(image, other);
    if (onOther != GreyPicture::of(image, ground))
        takeBetter(best, readGrey(onOther, recognizer));
    return best;
}

/// `image`, shrunk if it has many pixels, so that it can be kept until it is known whether it is
/// needed once more.
QImage bounded(QImage image)
{
    constexpr double mostPixels = 36e6;
    const double pixels = static_cast<double>(image.width()) * image.height();
    if (pixels <= mostPixels)
        return image;
    const QSizeF size = QSizeF(image.size()) * std::sqrt(mostPixels / pixels);
    return image.scaled(size.toSize().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                        Qt::SmoothTransformation);
}

} // namespace

std::string recognize(const QImage& image)
{
    return recognize(image, *TextRecognizer::create());
}

std::string recognize(const QImage& image, TextRecognizer& recognizer)
{
    if (image.isNull())
        return {};
    const GreyPicture::Ground ground = GreyPicture::groundOf(image);
    Reading reading = readGrey(GreyPicture::of(image, ground), recognizer);
    return joined(bestOf(std::move(reading), image, ground, recognizer).lines);
}

std::string recognize(const std::filesystem::path& imageAt)
{
    QImage image = ImageFile::load(imageAt);
    const GreyPicture::Ground ground = GreyPicture::groundOf(image);
    const QImage grey = GreyPicture::of(image, ground);
    // The large coloured picture is freed before the recogniser takes its memory.
    image = bounded(std::move(image));
    const auto recognizer = TextRecognizer::create();
    Reading reading = readGrey(grey, *recognizer);
    return joined(bestOf(std::move(reading), image, ground, *recognizer).lines);
}

} // namespace OCR
