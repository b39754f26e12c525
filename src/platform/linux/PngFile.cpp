#include "PngFile.h"

#include <QBuffer>
#include <QImageWriter>

#include <sys/mman.h>

#include <cerrno>
#include <stdexcept>
#include <string>
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

/// Returns 0, or the number of the error.
int writeAll(int descriptor, const QByteArray& bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = ::write(descriptor, bytes.constData() + written,
                                      static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += std::max<ssize_t>(count, 0);
    }
    return 0;
}

} // namespace

FileDescriptor of(const QImage& image)
{
    const QByteArray bytes = encoded(image);
    FileDescriptor file(::memfd_create("pithwise-capture", MFD_CLOEXEC));
    if (file.value() < 0)
        fail(std::generic_category().message(errno));
    if (const int error = writeAll(file.value(), bytes); error != 0)
        fail(std::generic_category().message(error));
    return file;
}

} // namespace PngFile
