#include "Child.h"

#include "FileDescriptor.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace Child {

namespace {

using Clock = std::chrono::steady_clock;

/// In the environment of a program that this one starts: the process that may wait for it.
constexpr const char* parentVariable = "PITHWISE_PARENT";

/// Longer than anybody waits.
constexpr std::chrono::milliseconds noLimit = std::chrono::hours(24 * 365);

void check(int error, const char* what)
{
    if (error != 0)
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
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "A pipe could not be made");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// A file to be read from its beginning. Unlike a pipe it need not be filled while the other side
/// reads, and nobody is told off when the other side does not.
FileDescriptor fileWith(std::string_view content)
{
    FileDescriptor file(content.empty() ? ::open("/dev/null", O_RDONLY | O_CLOEXEC)
                                        : ::memfd_create("input", MFD_CLOEXEC));
    const bool isWhole = file.value() >= 0 && writeAll(file.value(), content) == content.size() &&
                         ::lseek(file.value(), 0, SEEK_SET) == 0;
    check(isWhole ? 0 : errno, "The input of a process could not be made");
    return file;
}

/// Those that end with a null pointer, as the system takes lists of strings.
std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    for (std::string& string : strings)
        result.push_back(string.data());
    result.push_back(nullptr);
    return result;
}

/// This process's, and which process that is.
std::vector<std::string> childEnvironment()
{
    const std::string name = std::string(parentVariable) + '=';
    std::vector<std::string> variables = {name + std::to_string(::getpid())};
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with(name))
            variables.emplace_back(*variable);
    }
    return variables;
}

/// How a process starts: its standard streams, and none of this process's own ways with signals.
class Setup
{
public:
    Setup(int input, int output)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigemptyset(&signals);
        // Threads of this process have signals blocked that shall end the other one.
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        // Libraries have this one ignored. What else is ignored, whoever started this process wants
        // so, as nohup does.
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(&m_attributes, m_signalFlags);
    }
    ~Setup()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;

    void detach()
    {
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawn_file_actions_addchdir_np(&m_actions, "/");
        posix_spawnattr_setflags(&m_attributes, m_signalFlags | POSIX_SPAWN_SETSID);
    }

    pid_t start(std::vector<std::string> words) const
    {
        const std::string path = words.at(0);
        if (path == thisProgram())
            words[0] = "pithwise"; // what lists of processes show
        std::vector<std::string> environment = childEnvironment();
        pid_t child = 0;
        check(::posix_spawn(&child, path.c_str(), &m_actions, &m_attributes, pointers(words).data(),
                            pointers(environment).data()),
              "A process could not be started");
        return child;
    }

private:
    static constexpr short m_signalFlags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// A started process, which does not outlive this.
class Process
{
public:
    explicit Process(pid_t id) : m_id(id) {}
    ~Process()
    {
        if (m_id != 0)
            wait(SIGKILL);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The status that waitpid() tells, after `signal` where it is not 0.
    int wait(int signal = 0)
    {
        if (signal != 0)
            ::kill(m_id, signal);
        int status = 0;
        TEMP_FAILURE_RETRY(::waitpid(m_id, &status, 0));
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

enum class Bond { attached, detached };

struct Started
{
    pid_t id;
    FileDescriptor output;
};

Started start(std::vector<std::string> words, std::string_view input, Bond bond)
{
    const FileDescriptor file = fileWith(input);
    Pipe pipe = makePipe();
    Setup setup(file.value(), pipe.in.value());
    if (bond == Bond::detached)
        setup.detach();
    return {setup.start(std::move(words)), std::move(pipe.out)};
}

} // namespace

std::string thisProgram()
{
    return "/proc/self/exe";
}

Result run(std::vector<std::string> words, std::chrono::milliseconds limit, std::string_view input)
{
    const Started started = start(std::move(words), input, Bond::attached);
    Process process(started.id);
    Result result{};
    const bool isWhole = readAll(started.output.value(), limit, result.output);
    const int status = process.wait(isWhole ? 0 : SIGKILL);
    if (!isWhole)
        result.end = End::timedOut;
    else if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    else
        result.end = End::killed;
    return result;
}

std::string detach(std::vector<std::string> words, std::string_view input)
{
    const Started started = start(std::move(words), input, Bond::detached);
    std::string output;
    readAll(started.output.value(), noLimit, output);
    return output;
}

void endWithParent()
{
    // Of the thread that has started this process, which waits for it as long as it lives.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // One that had ended before is not told of.
    const char* const parent = std::getenv(parentVariable);
    if (parent != nullptr && std::to_string(::getppid()) != parent)
        ::raise(SIGKILL);
}

void tell(std::string_view output)
{
    std::signal(SIGPIPE, SIG_IGN);
    std::fwrite(output.data(), 1, output.size(), stdout);
    // Whoever waits for the end of the output must not wait for the rest.
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return; // it is closed at any rate
}

} // namespace Child
