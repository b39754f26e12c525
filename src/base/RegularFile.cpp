#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

RegularFile::RegularFile(FileDescriptor descriptor, std::uint64_t size)
    : m_descriptor(std::move(descriptor)), m_size(size)
{}

std::optional<RegularFile> RegularFile::open(const std::filesystem::path& path)
{
    // O_NONBLOCK, because opening a pipe would otherwise wait for its writer. It has no effect on
    // reading a regular file.
    FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (descriptor.value() < 0 || ::fstat(descriptor.value(), &status) != 0 ||
        !S_ISREG(status.st_mode))
        return std::nullopt;
    return RegularFile(std::move(descriptor), static_cast<std::uint64_t>(status.st_size));
}

std::optional<std::string> RegularFile::bytes() const
{
    if (m_size > mostBytes)
        return std::nullopt;
    // One byte more than the file's size, to notice a file that grows or (as in /proc) tells no
    // size.
    std::string bytes(m_size + 1, '\0');
    std::size_t length = 0;
    for (;;) {
        const ssize_t count =
            TEMP_FAILURE_RETRY(::pread(m_descriptor.value(), bytes.data() + length,
                                       bytes.size() - length, static_cast<off_t>(length)));
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
        if (length > mostBytes)
            return std::nullopt;
        if (length == bytes.size())
            bytes.resize(length + length / 2 + 4096);
    }
    bytes.resize(length);
    return bytes;
}
