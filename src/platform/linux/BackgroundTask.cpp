#include "BackgroundTask.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace BackgroundTask {

namespace {

[[noreturn]] void fail(int error, const char* what)
{
    throw std::system_error(error, std::generic_category(), what);
}

struct Pipe
{
    FileDescriptor out;
    FileDescriptor in;
};

Pipe makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        fail(errno, "A pipe");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// A file in memory, to be read from its beginning. Unlike a pipe it need not be filled while the
/// other side reads, and nobody is told off when the other side does not.
FileDescriptor fileWith(const std::string& content)
{
    FileDescriptor file(::memfd_create("input", MFD_CLOEXEC));
    std::size_t written = 0;
    while (file.value() >= 0 && written < content.size()) {
        const ssize_t count =
            ::write(file.value(), content.data() + written, content.size() - written);
        if (count < 0 && errno != EINTR)
            break;
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    if (written < content.size() || ::lseek(file.value(), 0, SEEK_SET) != 0)
        fail(errno, "A file in memory");
    return file;
}

/// What a program in the background starts with.
class SpawnOptions
{
public:
    SpawnOptions(int input, int output)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        // No folder is in use because of it.
        posix_spawn_file_actions_addchdir_np(&m_actions, "/");
        posix_spawnattr_init(&m_attributes);
        // This process may have signals blocked that shall end the other one.
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnOptions()
    {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnOptions(const SpawnOptions&) = delete;
    SpawnOptions& operator=(const SpawnOptions&) = delete;

    const posix_spawn_file_actions_t* actions() const { return &m_actions; }
    const posix_spawnattr_t* attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

[[noreturn]] void runInChild(int descriptor, const std::function<void(const Answer&)>& task)
{
    ::setsid();
    // Whoever waits for the end of the program's output must not wait for this.
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (int stream = 0; stream <= 2; ++stream)
        ::dup2(nowhere, stream);
    std::signal(SIGPIPE, SIG_IGN); // nobody may be waiting any more
    try {
        task([descriptor](const std::string& answer) {
            std::size_t sent = 0;
            while (sent < answer.size()) {
                const ssize_t count =
                    ::write(descriptor, answer.data() + sent, answer.size() - sent);
                if (count < 0 && errno != EINTR)
                    break;
                sent += count > 0 ? static_cast<std::size_t>(count) : 0;
            }
            ::close(descriptor);
        });
    } catch (const std::exception&) {
        ::_exit(1);
    }
    ::_exit(0);
}

} // namespace

/// Everything that comes from a pipe until all who could write to it have closed it.
static std::string readAll(const FileDescriptor& pipe)
{
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t count = 1;
    while (count > 0 || (count < 0 && errno == EINTR)) {
        count = ::read(pipe.value(), buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::string run(const std::function<void(const Answer&)>& task)
{
    Pipe pipe = makePipe();
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(pipe.out.release());
        runInChild(pipe.in.release(), task);
    }
    if (child < 0)
        fail(errno, "A process");
    ::close(pipe.in.release());
    return readAll(pipe.out);
}

std::string runProgram(const std::vector<std::string>& arguments, const std::string& input)
{
    const FileDescriptor file = fileWith(input);
    Pipe pipe = makePipe();
    const SpawnOptions options(file.value(), pipe.in.value());
    std::string name = "pithwise";
    std::vector<std::string> words = arguments;
    std::vector<char*> pointers = {name.data()};
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    // By this name it is the same program even where its file has been replaced meanwhile.
    const int error = ::posix_spawn(&child, "/proc/self/exe", options.actions(),
                                    options.attributes(), pointers.data(), environ);
    if (error != 0)
        fail(error, "A process");
    ::close(pipe.in.release());
    return readAll(pipe.out);
}

} // namespace BackgroundTask
