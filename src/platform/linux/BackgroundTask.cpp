#include "BackgroundTask.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace BackgroundTask {

namespace {

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

std::string run(const std::function<void(const Answer&)>& task)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "A pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        runInChild(ends[1], task);
    }
    const int error = errno;
    ::close(ends[1]);
    std::string answer;
    std::array<char, 4096> buffer{};
    ssize_t count = child < 0 ? 0 : 1;
    while (count > 0 || (count < 0 && errno == EINTR)) {
        count = ::read(ends[0], buffer.data(), buffer.size());
        if (count > 0)
            answer.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    if (child < 0)
        throw std::system_error(error, std::generic_category(), "A process");
    return answer;
}

} // namespace BackgroundTask
