#include "TextRecognizer.h"

#include "EnvironmentVariable.h"
#include "TextImage.h"

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <tesseract/baseapi.h>

#include <filesystem>
#include <iterator>
#include <random>
#include <thread>

namespace {

using Lines = std::vector<std::string>;

Lines read(TextRecognizer& recognizer, const QImage& image)
{
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    return recognizer
        .read({grey.constBits(), grey.width(), grey.height(),
               static_cast<std::size_t>(grey.bytesPerLine())})
        .lines;
}

Lines read(const QImage& image)
{
    return read(*TextRecognizer::create(), image);
}

const QStringList harbour = {QStringLiteral("The ferry leaves at 9:20."),
                             QStringLiteral("Tickets cost 35 euros."),
                             QStringLiteral("Mind the third step.")};
const Lines harbourLines = {"The ferry leaves at 9:20.", "Tickets cost 35 euros.",
                            "Mind the third step."};

QImage grey(int width, int height, int shade)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(QColor(shade, shade, shade));
    return image;
}

/// A folder for Tesseract's data that has only what is put there.
class DataFolder
{
public:
    void addEnglish() const
    {
        std::filesystem::create_symlink(m_installed / "eng.traineddata", file("eng"));
    }
    void add(const char* language, const QByteArray& content) const
    {
        QFile data(QString::fromStdString(file(language).string()));
        ASSERT_TRUE(data.open(QIODevice::WriteOnly));
        data.write(content);
    }

private:
    static std::filesystem::path installed()
    {
        tesseract::TessBaseAPI tesseract;
        tesseract.Init(nullptr, "eng");
        return tesseract.GetDatapath();
    }

    std::filesystem::path file(const std::string& language) const
    {
        return std::filesystem::path(m_folder.path().toStdString()) / (language + ".traineddata");
    }

    // Looked up before the variable is set.
    const std::filesystem::path m_installed = installed();
    const QTemporaryDir m_folder;
    const EnvironmentVariable m_variable{"TESSDATA_PREFIX", m_folder.path().toUtf8()};
};

std::ptrdiff_t threadCount()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(TextRecognizerTest, LinesComeInReadingOrderWithoutLineEnds)
{
    EXPECT_EQ(read(TextImage::render(harbour)), harbourLines);
}

TEST(TextRecognizerTest, SmallLargeAndDarkTextIsRead)
{
    for (const int pixelSize : {11, 16, 24, 48}) {
        EXPECT_EQ(read(TextImage::render(harbour, {.pixelSize = pixelSize})), harbourLines)
            << pixelSize;
        EXPECT_EQ(read(TextImage::render(harbour, {.pixelSize = pixelSize,
                                                   .ink = QColor(220, 220, 220),
                                                   .ground = QColor(30, 30, 30)})),
                  harbourLines)
            << pixelSize;
    }
}

TEST(TextRecognizerTest, AFaintTextIsRead)
{
    const TextImage::Look faint{.ink = QColor(150, 150, 150), .ground = QColor(190, 190, 190)};
    EXPECT_EQ(read(TextImage::render(harbour, faint)), harbourLines);
}

TEST(TextRecognizerTest, AFewWordsInAWindowAreReadWhateverIsAroundIt)
{
    const std::vector<TextImage::Look> windows = {
        {},
        {.ink = QColor(224, 224, 224), .ground = QColor(32, 32, 32)},
        {.ink = QColor(101, 123, 131), .ground = QColor(253, 246, 227)}};
    for (const int desktop : {34, 128, 192, 224}) {
        for (const TextImage::Look& window : windows) {
            QImage screen = grey(1280, 900, desktop).convertToFormat(QImage::Format_RGB32);
            QPainter painter(&screen);
            painter.fillRect(600, 60, 500, 200, window.ground);
            painter.drawImage(600, 60, TextImage::render({harbour[1]}, window));
            painter.end();
            Lines lines = read(screen);
            std::erase(lines, ""); // the edges of the window
            EXPECT_EQ(lines, Lines{harbourLines[1]})
                << window.ground.name().toStdString() << " on " << desktop;
        }
    }
}

TEST(TextRecognizerTest, ATextThatFillsItsPictureIsRead)
{
    const QImage wide = TextImage::render({harbour[0]});
    const QRect tight = wide.rect().adjusted(25, 27, -25, -26);
    EXPECT_EQ(read(wide.copy(tight)), Lines{harbourLines[0]});
}

TEST(TextRecognizerTest, OneObjectReadsManyPictures)
{
    const auto recognizer = TextRecognizer::create();
    EXPECT_EQ(read(*recognizer, TextImage::render({harbour[1]})), Lines{harbourLines[1]});
    EXPECT_EQ(read(*recognizer, grey(50, 50, 255)), Lines());
    EXPECT_EQ(read(*recognizer, TextImage::render({harbour[2]})), Lines{harbourLines[2]});
}

TEST(TextRecognizerTest, RowsMayBeLongerThanThePicture)
{
    const QImage whole = TextImage::render(harbour).convertToFormat(QImage::Format_Grayscale8);
    QImage padded(whole.width() + 500, whole.height(), QImage::Format_Grayscale8);
    padded.fill(0);
    for (int y = 0; y < whole.height(); ++y)
        std::copy_n(whole.constScanLine(y), whole.width(), padded.scanLine(y));
    EXPECT_EQ(TextRecognizer::create()
                  ->read({padded.constBits(), whole.width(), whole.height(),
                          static_cast<std::size_t>(padded.bytesPerLine())})
                  .lines,
              harbourLines);
}

TEST(TextRecognizerTest, APictureWithoutTextHasNoReadingAndNothingIsPrinted)
{
    testing::internal::CaptureStderr();
    const auto recognizer = TextRecognizer::create();
    EXPECT_EQ(recognizer->read({nullptr, 0, 0, 0}).lines, Lines());
    for (const int shade : {0, 128, 255}) {
        for (const QSize size : {QSize(1, 1), QSize(9, 9), QSize(640, 480), QSize(40000, 1)})
            EXPECT_EQ(read(*recognizer, grey(size.width(), size.height(), shade)), Lines());
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TextRecognizerTest, PicturesOfEveryShapeAreTakenAndNothingIsPrinted)
{
    testing::internal::CaptureStderr();
    const auto recognizer = TextRecognizer::create();
    for (const QSize size : {QSize(2, 1), QSize(1, 2), QSize(3, 3), QSize(11, 4), QSize(40000, 2),
                             QSize(2, 40000), QSize(33000, 30), QSize(30, 33000)}) {
        QImage image = grey(size.width(), size.height(), 255);
        image.scanLine(0)[0] = 0;
        EXPECT_NO_THROW(read(*recognizer, image)) << size.width() << " x " << size.height();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TextRecognizerTest, NoLineBeginsOrEndsInBlanks)
{
    // In noise, lines of nothing else are found.
    std::mt19937 random(1);
    QImage noise(1000, 600, QImage::Format_Grayscale8);
    for (int y = 0; y < noise.height(); ++y) {
        uchar* const row = noise.scanLine(y);
        for (int x = 0; x < noise.width(); ++x)
            row[x] = static_cast<uchar>(50 + random() % 140);
    }
    for (const std::string& line : read(noise))
        EXPECT_FALSE(line.starts_with(' ') || line.ends_with(' ')) << line;
}

TEST(TextRecognizerTest, ALongPageIsReadThroughout)
{
    QStringList lines;
    for (int i = 0; i < 10; ++i)
        lines += harbour;
    const QImage text = TextImage::render(lines, {.pixelSize = 24});
    QImage page = grey(text.width(), 33000, 255);
    for (const int top : {0, 15000, 33000 - text.height()}) {
        const QImage part = text.convertToFormat(QImage::Format_Grayscale8);
        for (int y = 0; y < part.height(); ++y)
            std::copy_n(part.constScanLine(y), part.width(), page.scanLine(top + y));
    }
    const Lines found = read(page);
    EXPECT_GE(std::count(found.begin(), found.end(), harbourLines[2]), 28);
}

TEST(TextRecognizerTest, NoThreadsAreStartedWhicheverThreadReads)
{
    const QImage image = TextImage::render(harbour).convertToFormat(QImage::Format_Grayscale8);
    const auto before = threadCount();
    EXPECT_EQ(read(image), harbourLines);
    EXPECT_EQ(threadCount(), before);
    std::thread([&] {
        EXPECT_EQ(read(image), harbourLines);
        EXPECT_EQ(threadCount(), before + 1);
    }).join();
}

TEST(TextRecognizerTest, SeveralThreadsReadAtOnceWithAnObjectEach)
{
    const QImage image = TextImage::render(harbour).convertToFormat(QImage::Format_Grayscale8);
    std::vector<Lines> found(6);
    {
        std::vector<std::jthread> threads;
        for (Lines& lines : found)
            threads.emplace_back([&lines, &image] {
                for (int round = 0; round < 3; ++round)
                    lines = read(image);
            });
    }
    EXPECT_THAT(found, testing::Each(harbourLines));
}

TEST(TextRecognizerTest, WithoutItsDataForEnglishItSaysWhatToInstall)
{
    const DataFolder folder;
    folder.add("deu", "");
    testing::internal::CaptureStderr();
    try {
        TextRecognizer::create();
        ADD_FAILURE();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Text recognition needs Tesseract's language data for English. "
                                   "Install it and try again.");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TextRecognizerTest, DamagedDataForEnglishIsLikeNone)
{
    const DataFolder folder;
    for (const QByteArray& content : {QByteArray(), QByteArray(1, '\xFF'),
                                      QByteArray(100000, '\xFF'), QByteArray(100000, '\0')}) {
        folder.add("eng", content);
        EXPECT_THROW(TextRecognizer::create(), std::runtime_error);
    }
}

TEST(TextRecognizerTest, ALanguageOfTheUserWithoutUsableDataDoesNoHarm)
{
    const EnvironmentVariable locale("LC_ALL", "de_DE.UTF-8");
    const DataFolder folder;
    folder.addEnglish();
    testing::internal::CaptureStderr();
    EXPECT_EQ(read(TextImage::render(harbour)), harbourLines);
    folder.add("deu", QByteArray(100000, '\xFF'));
    EXPECT_EQ(read(TextImage::render(harbour)), harbourLines);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
