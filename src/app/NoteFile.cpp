#include "NoteFile.h"

#include "FileDescriptor.h"
#include "PartFile.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <ctime>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace NoteFile {

namespace {

using Path = std::filesystem::path;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lockLimit(500);
constexpr std::chrono::milliseconds lockInterval(5);
constexpr int maximumLinks = 40; // the system's own limit
constexpr mode_t noteMode = 0600;
constexpr int maximumAttempts = 10; // an attempt fails only when another program interferes

[[noreturn]] void fail(int error)
{
    throw std::system_error(error, std::generic_category());
}

/// While alive, makes a write on this thread beyond the limit on file sizes fail instead of ending
/// the process.
class FileSizeSignalBlock
{
public:
    FileSizeSignalBlock()
    {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~FileSizeSignalBlock()
    {
        // Takes away a signal that is pending for this thread, which would end the process once
        // unblocked.
        const timespec atOnce = {};
        if (sigismember(&m_before, SIGXFSZ) == 0)
            sigtimedwait(&m_signal, nullptr, &atOnce);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    FileSizeSignalBlock(const FileSizeSignalBlock&) = delete;
    FileSizeSignalBlock& operator=(const FileSizeSignalBlock&) = delete;

private:
    sigset_t m_signal{};
    sigset_t m_before{};
};

/// Opens the folder and locks it against other processes that append to a file in it. If it cannot
/// be locked, as on some network file systems, only the order of the steps protects the file.
/// Throws std::runtime_error if another process does not release it in time.
FileDescriptor lockedFolder(const Path& folder)
{
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto deadline = Clock::now() + lockLimit;
    while (descriptor.value() >= 0 && ::flock(descriptor.value(), LOCK_EX | LOCK_NB) != 0 &&
           errno == EWOULDBLOCK) {
        // flock itself could wait without a limit, and the process that has the lock may be
        // stopped.
        if (Clock::now() >= deadline)
            throw std::runtime_error("Another program is writing to it.");
        std::this_thread::sleep_for(lockInterval);
    }
    return descriptor;
}

struct Opened
{
    FileDescriptor file; // none if it cannot be written to
    int error;           // why not, as in errno; 0 if it can
};

/// Opens the file for writing at its end. Throws if it is no regular file, or if the reason for the
/// failure does not show that the note is missing or write-protected.
Opened open(const Path& file)
{
    // O_NONBLOCK, because opening a pipe would otherwise wait for its reader.
    FileDescriptor descriptor(
        ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const int error = descriptor.value() < 0 ? errno : 0;
    struct stat status = {};
    // Anything but a regular file is not replaced either: it is no note, and may be a device.
    if (::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw std::runtime_error(file.filename().string() + " is not a file.");
    for (const int expected : {0, ENOENT, EACCES, EPERM, EROFS, ETXTBSY}) {
        if (error == expected)
            return {std::move(descriptor), error};
    }
    fail(error);
}

/// The path that the file's name leads to through all symbolic links.
Path withoutLinks(Path file)
{
    std::error_code ignored;
    for (int i = 0; i < maximumLinks && std::filesystem::is_symlink(file, ignored); ++i)
        file = file.parent_path() / std::filesystem::read_symlink(file, ignored);
    return file;
}

enum class Creation { done, taken, unsupported };

/// Removes the last `count` bytes, which have just been written, unless a program that does not
/// know the lock has added something since.
void takeBack(int descriptor, std::size_t count)
{
    const off_t end = ::lseek(descriptor, 0, SEEK_CUR);
    struct stat status = {};
    if (end >= 0 && ::fstat(descriptor, &status) == 0 && status.st_size == end)
        static_cast<void>(::ftruncate(descriptor, end - static_cast<off_t>(count)) == 0);
}

/// Adds the bytes and closes the file. If only a part can be written it is taken back.
void appendTo(FileDescriptor file, std::string_view bytes)
{
    // Usually one call writes all. If it writes less, the next call tells why.
    const std::size_t written = writeAll(file.value(), bytes);
    if (written < bytes.size()) {
        const int error = errno;
        takeBack(file.value(), written);
        fail(error);
    }
    if (::close(file.release()) != 0)
        fail(errno);
}

/// Makes the file, unless there is one by now (`taken`). It has no name until it is complete, so
/// that a killed process leaves nothing behind. Not every file system can do that (`unsupported`).
Creation create(const Path& file, std::string_view text)
{
    const FileDescriptor descriptor(
        ::open(file.parent_path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, noteMode));
    if (descriptor.value() < 0 && errno == ENOENT)
        fail(ENOENT); // a link leads to a folder that does not exist
    if (descriptor.value() < 0)
        return Creation::unsupported;
    if (writeAll(descriptor.value(), text) < text.size() || ::fsync(descriptor.value()) != 0)
        fail(errno);
    const std::string source = "/proc/self/fd/" + std::to_string(descriptor.value());
    if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, file.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return Creation::done;
    return errno == EEXIST ? Creation::taken : Creation::unsupported;
}

/// Makes the file and puts it in the place of any that is there.
void replace(const Path& file, std::string_view text)
{
    PartFile::removeAbandoned(file);
    PartFile part(file, "the note", noteMode);
    part.write(text);
    part.moveIntoPlace();
}

} // namespace

void append(const Path& file, std::string_view header, std::string_view entry)
{
    const FileSizeSignalBlock block;
    const FileDescriptor folder = lockedFolder(file.parent_path());
    Creation creation = Creation::taken;
    // Tries again if a program that does not know the lock has made the file in the meantime.
    for (int i = 0; creation == Creation::taken && i < maximumAttempts; ++i) {
        Opened opened = open(file);
        if (opened.error == 0)
            return appendTo(std::move(opened.file), entry);
        const Path target = withoutLinks(file);
        const std::string text = std::string(header).append(entry);
        creation = opened.error == ENOENT ? create(target, text) : Creation::unsupported;
        if (creation == Creation::unsupported)
            replace(target, text);
    }
    if (creation == Creation::taken)
        fail(EEXIST);
}

} // namespace NoteFile
