#include "PngFile.h"

#include "WriteAll.h"

#include <QBuffer>
#include <QImageWriter>

#include <sys/mman.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace PngFile {

namespace {

[[noreturn]] void fail(const std::string& cause)
{
    throw std::runtime_error("The screenshot could not be written: " + cause + ".");
}

QByteArray encoded(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(80); // zlib's fastest level: the file lives for a second
    if (!writer.write(image))
        fail(writer.errorString().toStdString());
    return bytes;
}

} // namespace

FileDescriptor of(const QImage& image)
{
    const QByteArray bytes = encoded(image);
    FileDescriptor file(::memfd_create("pithwise-capture", MFD_CLOEXEC));
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (file.value() < 0 || writeAll(file.value(), view) < view.size())
        fail(std::generic_category().message(errno));
    return file;
}

} // namespace PngFile
