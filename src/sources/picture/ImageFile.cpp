#include "ImageFile.h"

#include "AppError.h"
#include "HeifImage.h"
#include "RegularFile.h"

#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cstdint>
#include <mutex>

namespace ImageFile {

namespace {

constexpr std::int64_t mostPixels = 256'000'000;

/// The formats that are read, recognised by the file's content. WebP is among them because the web
/// serves it under the file names of the others. None of them can refer to other files, as SVG can.
constexpr std::array formats = {"png", "jpeg", "jpg", "tiff", "tif", "gif", "bmp", "webp"};

QImage readWithQt(QIODevice& device)
{
    // The limit of what Qt allocates for a picture is one for the whole process.
    constexpr int mostMegabytes = 1024; // 2^20 bytes each
    static std::once_flag once;
    std::call_once(once, QImageReader::setAllocationLimit, mostMegabytes);
    const QByteArray format = QImageReader::imageFormat(&device);
    if (std::find(formats.begin(), formats.end(), format) == formats.end())
        return {};
    QImageReader reader(&device, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || std::int64_t{size.width()} * size.height() > mostPixels)
        return {};
    return reader.read();
}

QImage read(const RegularFile& file)
{
    QFile device;
    if (!device.open(file.descriptor(), QIODevice::ReadOnly))
        return {};
    constexpr qint64 beginningBytes = 64;
    if (!HeifImage::isOne(device.peek(beginningBytes).toStdString()))
        return readWithQt(device);
    const std::optional<std::string> bytes = file.bytes();
    return bytes ? HeifImage::decoded(*bytes, mostPixels) : QImage();
}

} // namespace

QImage load(const std::filesystem::path& path)
{
    const std::optional<RegularFile> file = RegularFile::open(path);
    QImage image = file ? read(*file) : QImage();
    if (image.isNull())
        throw AppError("Could not read the image.");
    return image;
}

} // namespace ImageFile
