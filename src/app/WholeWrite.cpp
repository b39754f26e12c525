#include "WholeWrite.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace WholeWrite {

namespace {

// What runs in the child shares this process's memory, so it makes system calls and nothing else.

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

/// No signal is handled by this thread while it lives.
class SignalBlock
{
public:
    SignalBlock()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalBlock() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

private:
    sigset_t m_before{};
};

/// Writes in a process of its own and sends the error's number, or 0, to `answer`.
pid_t startWriting(int file, std::string_view bytes, int answer)
{
    const SignalBlock block;
    // A copy of this process would take a second where a model is loaded; this child borrows it,
    // and the thread stands still meanwhile.
    const pid_t child = ::vfork(); // NOLINT(clang-analyzer-security.insecureAPI.vfork)
    if (child == 0) {
        const int error = write(file, bytes); // NOLINT(clang-analyzer-unix.Vfork)
        const bool isSent = ::write(answer, &error, sizeof error) == sizeof error;
        ::_exit(isSent ? 0 : 1);
    }
    return child;
}

} // namespace

void append(FileDescriptor file, std::string_view bytes)
{
    // The system breaks off what a killed process is writing, but not what its child is. The answer
    // comes through a pipe, because whoever ignores ended children loses their exit status.
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        fail(errno);
    const FileDescriptor answer(ends[0]);
    FileDescriptor question(ends[1]);
    const pid_t child = startWriting(file.value(), bytes, question.value());
    if (child < 0)
        fail(errno);
    ::close(question.release());
    int error = EIO; // unless it is told otherwise
    while (::read(answer.value(), &error, sizeof error) < 0 && errno == EINTR)
        ;
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        ;
    if (error != 0)
        fail(error);
}

} // namespace WholeWrite
