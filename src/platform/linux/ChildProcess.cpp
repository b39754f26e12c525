#include "ChildProcess.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace ChildProcess {

namespace {

using Clock = std::chrono::steady_clock;

void check(int error, const char* what)
{
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

/// How a process starts: its standard streams, and none of this process's own ways with signals.
class Setup
{
public:
    explicit Setup(int output)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Setup()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;

    pid_t start(std::vector<std::string>& words) const
    {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_t child = 0;
        check(::posix_spawn(&child, arguments[0], &m_actions, &m_attributes, arguments.data(),
                            environ),
              "A process could not be started");
        return child;
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// A started process, which does not outlive this.
class Child
{
public:
    explicit Child(pid_t id) : m_id(id) {}
    ~Child()
    {
        if (m_id != 0)
            wait(SIGKILL);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// The status that waitpid() tells, after `signal` where it is not 0.
    int wait(int signal = 0)
    {
        if (signal != 0)
            ::kill(m_id, signal);
        int status = 0;
        while (::waitpid(m_id, &status, 0) < 0 && errno == EINTR) {
        }
        m_id = 0;
        return status;
    }

private:
    pid_t m_id;
};

/// Appends to `bytes` what comes until the other end is closed; false where nothing comes for
/// longer than `limit`.
bool readAll(int descriptor, std::chrono::milliseconds limit, std::string& bytes)
{
    std::array<char, 65536> buffer{};
    Clock::time_point deadline = Clock::now() + limit;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd waiting = {descriptor, POLLIN, 0};
        const int ready =
            ::poll(&waiting, 1, static_cast<int>(std::clamp<long long>(left.count(), 0, 60'000)));
        if (ready == 0 && Clock::now() >= deadline)
            return false;
        if (ready <= 0)
            continue;
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count == 0)
            return true;
        if (count < 0)
            continue;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
        deadline = Clock::now() + limit;
    }
}

} // namespace

Result run(std::vector<std::string> words, std::chrono::milliseconds limit)
{
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "A pipe could not be made");
    const FileDescriptor output(ends[0]);
    FileDescriptor childOutput(ends[1]);
    Child child(Setup(childOutput.value()).start(words));
    {
        const FileDescriptor closed = std::move(childOutput);
    }
    Result result{};
    const bool isWhole = readAll(output.value(), limit, result.output);
    const int status = child.wait(isWhole ? 0 : SIGKILL);
    if (!isWhole)
        result.end = End::timedOut;
    else if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    else
        result.end = End::killed;
    return result;
}

std::string thisProgram()
{
    return "/proc/self/exe";
}

void endWithParent()
{
    // Of the thread that has started this process, which waits for it as long as it lives.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace ChildProcess
