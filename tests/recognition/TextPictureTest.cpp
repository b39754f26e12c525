#include "TextPicture.h"

#include "TextImage.h"

#include <gtest/gtest.h>

namespace {

const QStringList text = {QStringLiteral("Every evening she copies the three lines by hand."),
                          QStringLiteral("The lamps along the pier are lit.")};

TextPicture::Prepared preparedWithLetters(const QImage& image)
{
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    return TextPicture::prepared({grey.constBits(), grey.width(), grey.height(),
                                  static_cast<std::size_t>(grey.bytesPerLine())});
}

Picture prepared(const QImage& image)
{
    return preparedWithLetters(image).picture;
}

/// How many times as wide the picture becomes, its margin aside.
double enlargement(const QImage& image)
{
    return static_cast<double>(pixGetWidth(prepared(image).get()) - 20) / image.width();
}

double meanShade(Pix* picture)
{
    float mean = 0;
    pixGetAverageMasked(picture, nullptr, 0, 0, 1, L_MEAN_ABSVAL, &mean);
    return static_cast<double>(mean);
}

TEST(TextPictureTest, OnlySmallTextIsEnlarged)
{
    for (const int pixelSize : {9, 11, 13, 15})
        EXPECT_EQ(enlargement(TextImage::render(text, {.pixelSize = pixelSize})), 2) << pixelSize;
    for (const int pixelSize : {22, 40, 100})
        EXPECT_EQ(enlargement(TextImage::render(text, {.pixelSize = pixelSize})), 1) << pixelSize;
}

TEST(TextPictureTest, ALargePictureOfSmallTextIsEnlargedOnlyAsFarAsThatPays)
{
    const auto enlargedOnPage = [](QSize size) {
        const QImage part = TextImage::render(text);
        QImage page(size, QImage::Format_ARGB32);
        page.fill(Qt::white);
        for (int y = 0; y < part.height(); ++y)
            std::copy_n(part.constScanLine(y), part.bytesPerLine(), page.scanLine(y));
        return enlargement(page);
    };
    EXPECT_EQ(enlargedOnPage({3840, 2160}), 2);
    EXPECT_NEAR(enlargedOnPage({4000, 4000}), 1.5, 0.01);
    EXPECT_EQ(enlargedOnPage({6000, 5000}), 1);
}

TEST(TextPictureTest, DarkGroundsBecomeLight)
{
    const TextImage::Look dark{.ink = Qt::lightGray, .ground = QColor(20, 20, 20)};
    EXPECT_GT(meanShade(prepared(TextImage::render(text, dark)).get()), 220);
    EXPECT_GT(meanShade(prepared(TextImage::render(text)).get()), 200);
}

TEST(TextPictureTest, ALightPageOnADarkTableStaysAsItIs)
{
    const QImage page = TextImage::render(text, {.pixelSize = 20});
    QImage table(page.width() * 3, page.height() * 3, QImage::Format_ARGB32);
    table.fill(Qt::black);
    for (int y = 0; y < page.height(); ++y)
        std::copy_n(page.constScanLine(y), page.bytesPerLine(),
                    table.scanLine(page.height() + y) + page.bytesPerLine());
    EXPECT_LT(meanShade(prepared(table).get()), 128);
}

int darkestShade(Pix* picture)
{
    int darkest = 0;
    pixGetExtremeValue(picture, 1, L_SELECT_MIN, nullptr, nullptr, nullptr, &darkest);
    return darkest;
}

TEST(TextPictureTest, AFaintTextIsGivenContrast)
{
    const TextImage::Look faint{.ink = QColor(200, 200, 200), .ground = QColor(220, 220, 220)};
    EXPECT_LT(darkestShade(prepared(TextImage::render(text, faint)).get()), 210);
    const TextImage::Look dark{.ink = QColor(47, 47, 47), .ground = QColor(30, 30, 30)};
    EXPECT_LT(darkestShade(prepared(TextImage::render(text, dark)).get()), 220);
}

TEST(TextPictureTest, ThePiecesThatCouldBeLettersAreCounted)
{
    EXPECT_EQ(preparedWithLetters(TextImage::render({QStringLiteral("a b c")}, {.pixelSize = 40}))
                  .letterCount,
              3U);
}

TEST(TextPictureTest, OneShadeIsNoText)
{
    QImage image(100, 100, QImage::Format_Grayscale8);
    image.fill(77);
    EXPECT_EQ(prepared(image), nullptr);
    image.setPixel(50, 50, 78);
    EXPECT_NE(prepared(image), nullptr);
}

TEST(TextPictureTest, NoSideBecomesTooLongForTesseract)
{
    for (const QSize size : {QSize(20000, 60), QSize(60, 20000), QSize(100000, 60)}) {
        const QImage part = TextImage::render(text);
        QImage image(size, QImage::Format_ARGB32);
        image.fill(Qt::white);
        for (int y = 0; y < std::min(part.height(), size.height()); ++y)
            std::copy_n(part.constScanLine(y), std::min(part.width(), size.width()) * 4,
                        image.scanLine(y));
        const Picture picture = prepared(image);
        EXPECT_LE(pixGetWidth(picture.get()), 32767);
        EXPECT_LE(pixGetHeight(picture.get()), 32767);
        EXPECT_GE(std::max(pixGetWidth(picture.get()), pixGetHeight(picture.get())), 32600);
    }
}

} // namespace
