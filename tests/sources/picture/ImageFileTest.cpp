#include "ImageFile.h"

#include "AppError.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <libheif/heif.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>
#include <thread>

namespace {

/// 60 by 40 pixels, its corners red, green, blue and grey, clockwise from the top left.
QImage corners(QImage::Format format = QImage::Format_RGB32)
{
    QImage image(60, 40, QImage::Format_RGB32);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            const bool isLeft = x < 30;
            image.setPixelColor(x, y,
                                y < 20 ? (isLeft ? QColor(Qt::red) : QColor(Qt::green))
                                       : (isLeft ? QColor(Qt::blue) : QColor(128, 128, 128)));
        }
    }
    return image.convertToFormat(format);
}

/// The colours of the corners by their initials, clockwise from the top left.
std::string cornersOf(const QImage& image)
{
    std::string result;
    const int right = image.width() - 5;
    const int bottom = image.height() - 5;
    for (const QPoint point :
         {QPoint(5, 5), QPoint(right, 5), QPoint(right, bottom), QPoint(5, bottom)}) {
        const QColor colour = image.pixelColor(point);
        const bool isGrey = std::abs(colour.red() - colour.green()) < 40 &&
                            std::abs(colour.red() - colour.blue()) < 40;
        const int most = std::max({colour.red(), colour.green(), colour.blue()});
        result += isGrey ? 'x' : most == colour.red() ? 'r' : most == colour.green() ? 'g' : 'b';
    }
    return result;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format)) << format;
    return buffer.data();
}

QByteArray bigEndian(std::uint32_t value)
{
    QByteArray bytes;
    for (const int shift : {24, 16, 8, 0})
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

/// The camera's notes with nothing but the orientation, as JPEG and HEIC hold them.
QByteArray exif(int orientation)
{
    QByteArray notes("Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
                     32);
    notes[25] = static_cast<char>(orientation);
    return notes;
}

QByteArray jpegTurned(int orientation)
{
    QByteArray jpeg = encoded(corners(), "jpeg");
    const QByteArray notes = exif(orientation);
    return jpeg.insert(2,
                       QByteArray("\xFF\xE1\0", 3) + static_cast<char>(notes.size() + 2) + notes);
}

heif_error append(heif_context*, const void* data, size_t size, void* bytes)
{
    static_cast<QByteArray*>(bytes)->append(static_cast<const char*>(data),
                                            static_cast<qsizetype>(size));
    return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

/// `image` as a camera's file, with `orientation` as its notes and as a transformation.
QByteArray heic(const QImage& image, int orientation = 1)
{
    if (heif_have_encoder_for_format(heif_compression_HEVC) == 0)
        throw std::runtime_error("libheif cannot write HEIC here; scripts/setup test mends that.");
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    heif_image* source = nullptr;
    heif_image_create(pixels.width(), pixels.height(), heif_colorspace_RGB,
                      heif_chroma_interleaved_RGBA, &source);
    heif_image_add_plane(source, heif_channel_interleaved, pixels.width(), pixels.height(), 8);
    int rowBytes = 0;
    std::uint8_t* plane = heif_image_get_plane(source, heif_channel_interleaved, &rowBytes);
    for (int y = 0; y < pixels.height(); ++y)
        std::copy_n(pixels.constScanLine(y), pixels.bytesPerLine(),
                    plane + std::ptrdiff_t{y} * rowBytes);
    heif_context* context = heif_context_alloc();
    heif_encoder* encoder = nullptr;
    heif_context_get_encoder_for_format(context, heif_compression_HEVC, &encoder);
    heif_encoder_set_lossy_quality(encoder, 90);
    heif_encoding_options* options = heif_encoding_options_alloc();
    options->save_alpha_channel = image.hasAlphaChannel() ? 1 : 0;
    options->image_orientation = static_cast<heif_orientation>(orientation);
    heif_image_handle* handle = nullptr;
    heif_context_encode_image(context, source, encoder, options, &handle);
    const QByteArray notes = exif(orientation);
    heif_context_add_exif_metadata(context, handle, notes.data(), static_cast<int>(notes.size()));
    QByteArray bytes;
    heif_writer writer{1, append};
    heif_context_write(context, &writer, &bytes);
    heif_image_handle_release(handle);
    heif_encoding_options_free(options);
    heif_encoder_release(encoder);
    heif_context_free(context);
    heif_image_release(source);
    return bytes;
}

/// The checksum that a part of a PNG ends with.
std::uint32_t checksum(const QByteArray& bytes)
{
    std::uint32_t result = 0xFFFFFFFF;
    for (const char byte : bytes) {
        result ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            result = result >> 1 ^ ((result & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~result;
}

/// A picture of one shade whose header tells another size.
QByteArray pngWithSize(std::uint32_t width, std::uint32_t height)
{
    QByteArray png = encoded(corners(QImage::Format_Grayscale8), "png");
    png.replace(16, 8, bigEndian(width) + bigEndian(height));
    return png.replace(29, 4, bigEndian(checksum(png.mid(12, 17))));
}

/// `file` with another width and height in the header, where `name` is the part of the file they
/// follow by `distance` bytes.
QByteArray withSize(QByteArray file, const char* name, qsizetype distance, const QByteArray& size)
{
    for (qsizetype at = file.indexOf(name); at >= 0; at = file.indexOf(name, at + 1))
        file.replace(at + distance, size.size(), size);
    return file;
}

std::int64_t peakMemory()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

class ImageFileTest : public testing::Test
{
protected:
    std::filesystem::path write(const QByteArray& bytes, const std::string& name = "picture.png")
    {
        std::filesystem::path path = folder / name;
        QFile file(QString::fromStdString(path.string()));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    static void expectRefused(const std::filesystem::path& file)
    {
        try {
            ImageFile::load(file);
            ADD_FAILURE() << file;
        } catch (const AppError& error) {
            EXPECT_EQ(error.message(), "Could not read the image.");
        }
    }

    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
};

TEST_F(ImageFileTest, EveryFormatIsRead)
{
    for (const char* format : {"png", "jpeg", "tiff", "bmp"}) {
        const QImage image = ImageFile::load(write(encoded(corners(), format)));
        EXPECT_EQ(image.size(), QSize(60, 40)) << format;
        EXPECT_EQ(cornersOf(image), "rgxb") << format;
    }
    EXPECT_EQ(cornersOf(ImageFile::load(write(heic(corners())))), "rgxb");
}

TEST_F(ImageFileTest, TheFirstPictureOfAnAnimationIsRead)
{
    // Two pictures of 1 by 1 pixel: white, then black.
    const QByteArray gif("GIF89a\x01\0\x01\0\x80\0\0\xFF\xFF\xFF\0\0\0"
                         ",\0\0\0\0\x01\0\x01\0\0\x02\x02\x44\x01\0"
                         ",\0\0\0\0\x01\0\x01\0\0\x02\x02\x4C\x01\0;",
                         50);
    const QImage image = ImageFile::load(write(gif));
    EXPECT_EQ(image.size(), QSize(1, 1));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
}

TEST_F(ImageFileTest, EveryDepthIsRead)
{
    for (const QImage::Format format :
         {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
          QImage::Format_Grayscale16, QImage::Format_ARGB32, QImage::Format_RGBA64}) {
        for (const char* kind : {"png", "tiff", "bmp"}) {
            const QImage image = ImageFile::load(write(encoded(corners(format), kind)));
            EXPECT_EQ(image.size(), QSize(60, 40)) << kind << format;
            EXPECT_LT(image.pixelColor(5, 35).lightness(), image.pixelColor(55, 35).lightness() + 1)
                << kind << format;
        }
    }
}

TEST_F(ImageFileTest, AProgressivePictureIsRead)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    ASSERT_TRUE(writer.write(corners()));
    ASSERT_TRUE(buffer.data().contains("\xFF\xC2"));
    EXPECT_EQ(cornersOf(ImageFile::load(write(buffer.data()))), "rgxb");
}

TEST_F(ImageFileTest, TheContentDecidesNotTheName)
{
    EXPECT_EQ(cornersOf(ImageFile::load(write(encoded(corners(), "jpeg"), "a.heic"))), "rgxb");
    EXPECT_EQ(cornersOf(ImageFile::load(write(heic(corners()), "a.jpg"))), "rgxb");
    EXPECT_EQ(cornersOf(ImageFile::load(write(encoded(corners(), "tiff"), "a"))), "rgxb");
    EXPECT_EQ(
        cornersOf(ImageFile::load(write(encoded(corners(), "bmp"), "line\nfeed \U0001F4F7.gif"))),
        "rgxb");
}

// What the eight orientations of the camera make of the corners.
constexpr const char* turned[] = {"rgxb", "grbx", "xbrg", "bxgr", "rbxg", "brgx", "xgrb", "gxbr"};

TEST_F(ImageFileTest, APhotographIsUprightAsTheCameraWasHeld)
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const QImage image = ImageFile::load(write(jpegTurned(orientation)));
        EXPECT_EQ(image.size(), orientation < 5 ? QSize(60, 40) : QSize(40, 60)) << orientation;
        EXPECT_EQ(cornersOf(image), turned[orientation - 1]) << orientation;
    }
}

TEST_F(ImageFileTest, AHeicPhotographIsTurnedOnce)
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const QImage image = ImageFile::load(write(heic(corners(), orientation)));
        EXPECT_EQ(image.size(), orientation < 5 ? QSize(60, 40) : QSize(40, 60)) << orientation;
        EXPECT_EQ(cornersOf(image), turned[orientation - 1]) << orientation;
    }
}

TEST_F(ImageFileTest, TransparencyIsKept)
{
    QImage image = corners(QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    EXPECT_EQ(ImageFile::load(write(encoded(image, "png"))).pixelColor(9, 9).alpha(), 0);
    EXPECT_EQ(ImageFile::load(write(heic(image))).pixelColor(9, 9).alpha(), 0);
    EXPECT_FALSE(ImageFile::load(write(heic(corners()))).hasAlphaChannel());
}

TEST_F(ImageFileTest, AnyThreadReads)
{
    std::thread([&] {
        EXPECT_EQ(cornersOf(ImageFile::load(write(encoded(corners(), "tiff")))), "rgxb");
        EXPECT_EQ(cornersOf(ImageFile::load(write(heic(corners())))), "rgxb");
    }).join();
}

TEST_F(ImageFileTest, WhatIsNoPictureIsRefused)
{
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray(1, '\xFF'), QByteArray(100000, '\xFF'), QByteArray(100000, '\0'),
          QByteArray("text"), QByteArray("\x89PNG\r\n\x1A\n"), QByteArray("\xFF\xD8\xFF"),
          QByteArray("II*\0\xFF\xFF\xFF\xFF", 8), QByteArray("GIF89a"), QByteArray("BM"),
          QByteArray("\0\0\0\x18"
                     "ftypheic",
                     12),
          QByteArray::fromStdString(svg)})
        expectRefused(write(bytes));
}

TEST_F(ImageFileTest, FilesThatEndEarlyDoNotCrash)
{
    for (const QByteArray& whole :
         {encoded(corners(), "png"), encoded(corners(), "jpeg"), encoded(corners(), "tiff"),
          encoded(corners(), "bmp"), heic(corners())}) {
        for (qsizetype length = 0; length < whole.size(); length += 1 + whole.size() / 60) {
            try {
                EXPECT_EQ(ImageFile::load(write(whole.left(length))).size(), QSize(60, 40));
            } catch (const AppError& error) {
                EXPECT_EQ(error.message(), "Could not read the image.");
            }
        }
    }
}

TEST_F(ImageFileTest, WhatIsNoRegularFileIsRefusedWithoutWaiting)
{
    expectRefused(folder / "missing.png");
    expectRefused(folder);
    expectRefused("/dev/zero");
    const std::filesystem::path pipe = folder / "pipe.png";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectRefused(pipe);
}

TEST_F(ImageFileTest, APhotographOf100MegapixelsIsRead)
{
    QImage large(11600, 8700, QImage::Format_RGB32);
    large.fill(Qt::white);
    large.setPixelColor(11599, 8699, Qt::black);
    const std::filesystem::path file = write(encoded(large, "bmp"));
    large = QImage();
    const QImage image = ImageFile::load(file);
    EXPECT_EQ(image.size(), QSize(11600, 8700));
    EXPECT_EQ(image.pixelColor(11599, 8699), QColor(Qt::black));
}

TEST_F(ImageFileTest, APictureOfMorePixelsThanThatIsRefusedHoweverSmallTheyAre)
{
    QImage large(16'000, 16'300, QImage::Format_Mono); // Qt itself would take it
    large.fill(0);
    expectRefused(write(encoded(large, "png")));
}

TEST_F(ImageFileTest, TheSizeInTheHeaderAloneRefusesNothingThatFits)
{
    EXPECT_EQ(ImageFile::load(write(pngWithSize(60, 40))).size(), QSize(60, 40));
}

TEST_F(ImageFileTest, AnAbsurdSizeIsRefusedWithoutTheMemoryItAsksFor)
{
    const QByteArray size = bigEndian(20000) + bigEndian(20000); // 1.6 GB
    QByteArray bitmap = encoded(corners(), "bmp");
    bitmap.replace(18, 8, QByteArray("\x20\x4E\0\0\x20\x4E\0\0", 8));
    const std::vector<std::filesystem::path> files = {
        write(pngWithSize(20000, 20000), "1"),
        write(withSize(encoded(corners(), "jpeg"), "\xFF\xC0", 5, "\x4E\x20\x4E\x20"), "2"),
        write(withSize(heic(corners()), "ispe", 8, size), "3"),
        write(bitmap, "4"),
        write(pngWithSize(0x7FFFFFFF, 0x7FFFFFFF), "5"),
    };
    const std::int64_t before = peakMemory();
    for (const std::filesystem::path& file : files)
        expectRefused(file);
    EXPECT_LT(peakMemory() - before, 100'000'000);
}

} // namespace
