#include "WholeWrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace WholeWrite {

namespace {

// What runs in the child may use nothing that another thread could have held locked at the fork.

/// Takes back the last `count` bytes, which are the last that were written, unless a program that
/// knows no lock has added something since.
void takeBack(int file, std::size_t count)
{
    const off_t end = ::lseek(file, 0, SEEK_CUR);
    struct stat status = {};
    if (end >= 0 && ::fstat(file, &status) == 0 && status.st_size == end)
        static_cast<void>(::ftruncate(file, end - static_cast<off_t>(count)) == 0);
}

/// The error's number, or 0.
int write(int file, std::string_view bytes)
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        // One call does it all; when it does less, another one tells why.
        const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            const int error = errno;
            takeBack(file, written);
            return error;
        }
        written += static_cast<std::size_t>(count);
    }
    return ::close(file) == 0 ? 0 : errno;
}

[[noreturn]] void fail(int error)
{
    throw std::system_error(error, std::generic_category());
}

} // namespace

void append(FileDescriptor file, std::string_view bytes)
{
    // A process of its own, because the system breaks off what a killed one is writing. The answer
    // comes through a pipe, because whoever ignores ended children loses their exit status.
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        fail(errno);
    const FileDescriptor answer(ends[0]);
    FileDescriptor question(ends[1]);
    const pid_t child = ::fork();
    if (child < 0)
        fail(errno);
    if (child == 0) {
        const int error = write(file.value(), bytes);
        ::_exit(::write(question.value(), &error, sizeof error) == sizeof error ? 0 : 1);
    }
    ::close(question.release());
    int error = EIO; // unless it is told otherwise
    ssize_t count = 0;
    do
        count = ::read(answer.value(), &error, sizeof error);
    while (count < 0 && errno == EINTR);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        ;
    if (error != 0)
        fail(error);
}

} // namespace WholeWrite
