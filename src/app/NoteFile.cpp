#include "NoteFile.h"

#include "FileDescriptor.h"
#include "PartFile.h"

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
constexpr int maximumLinks = 40; // as for the system
constexpr mode_t noteMode = 0600;
constexpr int maximumAttempts = 10; // each is in vain only when another program interferes

[[noreturn]] void fail(int error)
{
    throw std::system_error(error, std::generic_category());
}

/// While it lives, a write beyond the limit on file sizes fails instead of ending the process.
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
        // What waits for this thread would end the process now.
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

/// The folder, locked against other processes that append to a file in it. Where it cannot be
/// locked, as on some network file systems, only the order of what happens protects the file.
FileDescriptor lockedFolder(const Path& folder)
{
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto deadline = Clock::now() + lockLimit;
    while (descriptor.value() >= 0 && ::flock(descriptor.value(), LOCK_EX | LOCK_NB) != 0 &&
           errno == EWOULDBLOCK) {
        // The system's own waiting has no limit, and another process may have been stopped.
        if (Clock::now() >= deadline)
            throw std::runtime_error("Another program is writing to it.");
        std::this_thread::sleep_for(lockInterval);
    }
    return descriptor;
}

struct Opened
{
    FileDescriptor file; // none where it cannot be written to
    int error;           // why it cannot
};

/// Opens the file for writing at its end. Throws where that fails for a reason that says nothing
/// about the note which may be there.
Opened open(const Path& file)
{
    // O_NONBLOCK, because opening a pipe would wait for its reader.
    FileDescriptor descriptor(
        ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const int error = descriptor.value() < 0 ? errno : 0;
    struct stat status = {};
    // What is no file is not replaced either: it is no note, and may be a device.
    if (::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw std::runtime_error(file.filename().string() + " is not a file.");
    for (const int expected : {0, ENOENT, EACCES, EPERM, EROFS, ETXTBSY}) {
        if (error == expected)
            return {std::move(descriptor), error};
    }
    fail(error);
}

/// What the file's name leads to in the end.
Path withoutLinks(Path file)
{
    std::error_code ignored;
    for (int i = 0; i < maximumLinks && std::filesystem::is_symlink(file, ignored); ++i)
        file = file.parent_path() / std::filesystem::read_symlink(file, ignored);
    return file;
}

enum class Creation { done, taken, unsupported };

/// Whether all of `bytes` has been written; `errno` says why not. What is left of them is what has
/// not.
bool write(int descriptor, std::string_view& bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

/// Takes back the last `count` bytes, which are the last that were written, unless a program that
/// knows no lock has added something since.
void takeBack(int descriptor, std::size_t count)
{
    const off_t end = ::lseek(descriptor, 0, SEEK_CUR);
    struct stat status = {};
    if (end >= 0 && ::fstat(descriptor, &status) == 0 && status.st_size == end)
        static_cast<void>(::ftruncate(descriptor, end - static_cast<off_t>(count)) == 0);
}

/// Adds the bytes and closes the file. What comes out short is taken back.
void appendTo(FileDescriptor file, std::string_view bytes)
{
    // One call does it all; when it does less, the next one tells why.
    std::string_view rest = bytes;
    if (!write(file.value(), rest)) {
        const int error = errno;
        takeBack(file.value(), bytes.size() - rest.size());
        fail(error);
    }
    if (::close(file.release()) != 0)
        fail(errno);
}

/// Makes the file, unless there is one by now. Until it is complete it has no name, so that a
/// process that is killed leaves nothing. Not every file system can do that.
Creation create(const Path& file, std::string_view text)
{
    const FileDescriptor descriptor(
        ::open(file.parent_path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, noteMode));
    if (descriptor.value() < 0 && errno == ENOENT)
        fail(ENOENT); // a link led to a folder that is not there
    if (descriptor.value() < 0)
        return Creation::unsupported;
    if (!write(descriptor.value(), text) || ::fsync(descriptor.value()) != 0)
        fail(errno);
    const std::string source = "/proc/self/fd/" + std::to_string(descriptor.value());
    if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, file.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return Creation::done;
    return errno == EEXIST ? Creation::taken : Creation::unsupported;
}

/// Makes the file in place of any that is there.
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
    // Again where a program that knows no lock has made the file meanwhile.
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
