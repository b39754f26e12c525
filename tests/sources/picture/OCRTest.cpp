#include "OCR.h"

#include "AppError.h"
#include "EnvironmentVariable.h"
#include "RecordingTextRecognizer.h"
#include "TextImage.h"

#include <QPainter>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

const QStringList harbour = {QStringLiteral("The ferry leaves at 9:20."),
                             QStringLiteral("Mind the third step.")};
const std::string harbourText = "The ferry leaves at 9:20.\nMind the third step.";

int shadeAt(const QImage& image, int x, int y)
{
    return image.constScanLine(y)[x];
}

/// `ink` on nothing: a bar across a transparent picture of 90 by 90 pixels.
QImage barOnNothing(QColor ink)
{
    QImage image(90, 90, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 40; y < 50; ++y) {
        for (int x = 10; x < 80; ++x)
            image.setPixelColor(x, y, ink);
    }
    return image;
}

/// Makes every pixel as much as `amount` lighter or darker.
void addNoise(QImage& image, int amount)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> change(-amount, amount);
    const auto changed = [](int shade, int by) { return std::clamp(shade + by, 0, 255); };
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int by = change(random);
            row[x] = qRgb(changed(qRed(row[x]), by), changed(qGreen(row[x]), by),
                          changed(qBlue(row[x]), by));
        }
    }
}

/// The text on nothing, with an edge of `fringe` around its letters.
QImage withFringe(const TextImage::Look& look, QColor fringe)
{
    const QImage letters = TextImage::render(harbour, look);
    // Not text drawn in that colour: where it is light, its smooth borders become dark.
    QImage edges = letters.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter edgePainter(&edges);
    edgePainter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    edgePainter.fillRect(edges.rect(), fringe);
    edgePainter.end();
    QImage image(letters.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (const int x : {-3, -2, -1, 0, 1, 2, 3}) {
        for (const int y : {-3, -2, -1, 0, 1, 2, 3})
            painter.drawImage(x, y, edges);
    }
    painter.drawImage(0, 0, letters);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage seen(const QImage& image)
{
    RecordingTextRecognizer recognizer;
    OCR::recognize(image, recognizer);
    return recognizer.images.size() == 1 ? recognizer.images[0] : QImage();
}

TEST(OCRTest, LinesAreJoinedInTheirOrderAndEmptyOnesLeftOut)
{
    RecordingTextRecognizer recognizer;
    recognizer.answer = {"", "second", "", "", "first", " third ", ""};
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour), recognizer), "second\nfirst\n third ");
    recognizer.answer = {"", ""};
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour), recognizer), "");
    recognizer.answer = {};
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour), recognizer), "");
}

TEST(OCRTest, TheErrorOfTheRecognizerPassesThrough)
{
    RecordingTextRecognizer recognizer;
    recognizer.error = "The recogniser is tired.";
    try {
        OCR::recognize(TextImage::render(harbour), recognizer);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "The recogniser is tired.");
    }
}

TEST(OCRTest, APictureOfNothingHasNoText)
{
    RecordingTextRecognizer recognizer;
    recognizer.answer = {"text"};
    EXPECT_EQ(OCR::recognize(QImage(), recognizer), "");
    EXPECT_TRUE(recognizer.images.empty());
}

TEST(OCRTest, ColoursBecomeShadesOfGreyInEveryFormat)
{
    QImage image(67, 3, QImage::Format_RGB32); // a width whose rows are padded in most formats
    image.fill(Qt::white);
    image.setPixelColor(1, 2, Qt::black);
    for (const QImage::Format format :
         {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_RGB16, QImage::Format_RGB888,
          QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_RGBA8888_Premultiplied,
          QImage::Format_RGBA64, QImage::Format_Grayscale8, QImage::Format_Grayscale16}) {
        const QImage grey = seen(image.convertToFormat(format));
        ASSERT_EQ(grey.size(), image.size()) << format;
        EXPECT_EQ(shadeAt(grey, 1, 2), 0) << format;
        EXPECT_EQ(shadeAt(grey, 2, 2), 255) << format;
        EXPECT_EQ(shadeAt(grey, 66, 0), 255) << format;
    }
}

TEST(OCRTest, DarkContentOnNothingGetsALightGround)
{
    for (const QColor ink : {QColor(Qt::black), QColor(100, 0, 0), QColor(0, 0, 255)}) {
        const QImage grey = seen(barOnNothing(ink));
        EXPECT_EQ(shadeAt(grey, 0, 0), 255);
        EXPECT_LT(shadeAt(grey, 45, 45), 128);
    }
}

TEST(OCRTest, LightContentOnNothingGetsADarkGround)
{
    for (const QColor ink : {QColor(Qt::white), QColor(255, 255, 0), QColor(255, 255, 255, 150)}) {
        const QImage grey = seen(barOnNothing(ink));
        EXPECT_EQ(shadeAt(grey, 0, 0), 0);
        EXPECT_GT(shadeAt(grey, 45, 45), 128);
    }
}

TEST(OCRTest, ALightPageWithTransparentCornersKeepsItsGround)
{
    QImage image(90, 90, QImage::Format_ARGB32);
    image.fill(Qt::white);
    image.setPixelColor(0, 0, Qt::transparent);
    EXPECT_EQ(shadeAt(seen(image), 0, 0), 255);
}

TEST(OCRTest, HalfTransparentContentIsMixedWithItsGround)
{
    EXPECT_NEAR(shadeAt(seen(barOnNothing(QColor(0, 0, 0, 51))), 45, 45), 204, 1);
}

TEST(OCRTest, TheTextInAPictureIsRead)
{
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour)), harbourText);
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour, {.ground = Qt::transparent})), harbourText);
    EXPECT_EQ(
        OCR::recognize(TextImage::render(harbour, {.ink = Qt::white, .ground = Qt::transparent})),
        harbourText);
}

TEST(OCRTest, ATextOfLittleContrastIsRead)
{
    // One and a half to one, and less.
    for (const TextImage::Look& look :
         {TextImage::Look{.ink = QColor(47, 47, 47), .ground = QColor(30, 30, 30)},
          TextImage::Look{.ink = QColor(211, 211, 211)},
          TextImage::Look{.ink = QColor(101, 101, 101), .ground = QColor(128, 128, 128)},
          TextImage::Look{.pixelSize = 22, .ink = Qt::yellow},
          TextImage::Look{.pixelSize = 22, .ink = Qt::cyan}}) {
        EXPECT_EQ(OCR::recognize(TextImage::render(harbour, look)), harbourText)
            << look.ink.name().toStdString() << " on " << look.ground.name().toStdString();
    }
}

TEST(OCRTest, AColouredTextIsReadOnAColourOfTheSameShade)
{
    const TextImage::Look nearly{
        .pixelSize = 30, .ink = QColor(200, 0, 0), .ground = QColor(0, 110, 0)};
    EXPECT_EQ(OCR::recognize(TextImage::render(harbour, nearly)), harbourText);
    const TextImage::Look exactly{
        .pixelSize = 30, .ink = QColor(255, 0, 0), .ground = QColor(0, 175, 0)};
    EXPECT_THAT(OCR::recognize(TextImage::render(harbour, exactly)),
                testing::HasSubstr("Mind the third step"));
}

TEST(OCRTest, ATextInNoiseIsRead)
{
    QImage image =
        TextImage::render(harbour, {.pixelSize = 24}).convertToFormat(QImage::Format_RGB32);
    addNoise(image, 50);
    EXPECT_EQ(OCR::recognize(image), harbourText);
}

TEST(OCRTest, AGreyTextInALittleNoiseIsRead)
{
    const QStringList prose = {QStringLiteral("The harbour office opens at seven, long before"),
                               QStringLiteral("the first ferry leaves for the islands. By then"),
                               QStringLiteral("Martha has read the weather report, filled the"),
                               QStringLiteral("kettle and written three lines on the board.")};
    for (const int pixelSize : {18, 24}) {
        const TextImage::Look look{.pixelSize = pixelSize, .ink = QColor(150, 150, 150)};
        QImage image = TextImage::render(prose, look).convertToFormat(QImage::Format_RGB32);
        addNoise(image, 20);
        EXPECT_EQ(OCR::recognize(image), prose.join('\n').toStdString()) << pixelSize;
    }
}

TEST(OCRTest, ATextWithAFringeOfTheOtherShadeIsReadOnNothing)
{
    for (const QColor ink : {QColor(Qt::black), QColor(90, 90, 90), QColor(0, 0, 160)}) {
        for (const int pixelSize : {14, 24}) {
            const TextImage::Look look{
                .pixelSize = pixelSize, .ink = ink, .ground = Qt::transparent};
            EXPECT_EQ(OCR::recognize(withFringe(look, Qt::white)), harbourText)
                << ink.name().toStdString() << ", " << pixelSize;
        }
    }
}

TEST(OCRTest, TheGrainOfAnEmptySheetIsNoText)
{
    for (const int amount : {1, 3, 6}) {
        for (const int shade : {30, 128, 240}) {
            QImage sheet(640, 480, QImage::Format_RGB32);
            sheet.fill(QColor(shade, shade, shade));
            addNoise(sheet, amount);
            EXPECT_EQ(OCR::recognize(sheet), "") << amount << " on " << shade;
        }
    }
}

TEST(OCRTest, WhatIsReadWithoutADoubtIsReadOnce)
{
    RecordingTextRecognizer recognizer;
    recognizer.answers = {{.lines = {"first"}, .certainty = 1}};
    recognizer.plainAnswer = {.lines = {"plain"}, .certainty = 2};
    EXPECT_EQ(OCR::recognize(barOnNothing(Qt::black), recognizer), "first");
    EXPECT_EQ(recognizer.images.size(), 1U);
    EXPECT_THAT(recognizer.plainImages, testing::IsEmpty());
}

TEST(OCRTest, OfSeveralReadingsTheSurestIsTaken)
{
    const auto best = [](double first, double plain, double other) {
        RecordingTextRecognizer recognizer;
        recognizer.answers = {{.lines = {"first"}, .certainty = first, .isDoubtful = true},
                              {.lines = {"other"}, .certainty = other}};
        recognizer.plainAnswer = {.lines = {"plain"}, .certainty = plain};
        return OCR::recognize(barOnNothing(Qt::black), recognizer);
    };
    EXPECT_EQ(best(0, 0, 0), "first");
    EXPECT_EQ(best(1, 2, 0), "plain");
    EXPECT_EQ(best(2, 1, 1), "first");
    EXPECT_EQ(best(1, 2, 3), "other");
}

TEST(OCRTest, ADoubtfulPictureIsReadInItsColoursOnWhiteAndOnItsOtherGround)
{
    RecordingTextRecognizer recognizer;
    recognizer.answers = {{.lines = {}, .isDoubtful = true}, {}};
    OCR::recognize(barOnNothing(Qt::red), recognizer);
    ASSERT_EQ(recognizer.plainImages.size(), 1U);
    EXPECT_EQ(recognizer.plainImages[0].pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(recognizer.plainImages[0].pixelColor(45, 45), QColor(Qt::red));
    ASSERT_EQ(recognizer.images.size(), 2U);
    EXPECT_EQ(shadeAt(recognizer.images[0], 0, 0), 255);
    EXPECT_EQ(shadeAt(recognizer.images[1], 0, 0), 0);
}

TEST(OCRTest, ADoubtfulPictureOfWhichNothingIsTransparentHasOneGround)
{
    RecordingTextRecognizer recognizer;
    recognizer.answers = {{.lines = {}, .isDoubtful = true}};
    OCR::recognize(TextImage::render(harbour), recognizer); // in a format with transparency
    EXPECT_EQ(recognizer.images.size(), 1U);
    EXPECT_EQ(recognizer.plainImages.size(), 1U);
}

TEST(OCRTest, TheTextInAPictureFileIsRead)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("line\nfeed \U0001F4F7.png"));
    ASSERT_TRUE(TextImage::render(harbour).save(file));
    EXPECT_EQ(OCR::recognize(std::filesystem::path(file.toStdString())), harbourText);
}

TEST(OCRTest, AFileThatIsNoPictureIsRefusedBeforeRecognisingIsTried)
{
    const QTemporaryDir folder;
    const EnvironmentVariable noData("TESSDATA_PREFIX", folder.path().toUtf8());
    try {
        OCR::recognize(std::filesystem::path(folder.path().toStdString()) / "missing.png");
        FAIL();
    } catch (const AppError& error) {
        EXPECT_EQ(error.message(), "Could not read the image.");
    }
}

TEST(OCRTest, ARecognizerThatIsNotInstalledIsTheRecognizersError)
{
    const QTemporaryDir folder;
    const EnvironmentVariable noData("TESSDATA_PREFIX", folder.path().toUtf8());
    EXPECT_THROW(OCR::recognize(TextImage::render(harbour)), std::runtime_error);
}

} // namespace
