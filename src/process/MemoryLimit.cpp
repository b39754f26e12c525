#include "MemoryLimit.h"

#include "WriteAll.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <new>
#include <utility>

namespace MemoryLimit {

namespace {

#ifdef PITHWISE_SANITIZED
constexpr bool isPossible = false; // the sanitizers reserve more than any limit for themselves
#else
constexpr bool isPossible = true;
#endif

/// Less than this left means that there was none.
constexpr std::size_t reserve = std::size_t{64} << 20;

std::string lastSentence; // not changed any more once there are handlers
int lastStatus = 0;

[[noreturn]] void end()
{
    static_cast<void>(writeAll(STDOUT_FILENO, lastSentence));
    ::_exit(lastStatus);
}

/// Libraries end the process by one of these where they get no memory. A handler may make calls to
/// the system only.
void handleCrash(int signal)
{
    void* const trial = ::mmap(nullptr, reserve, PROT_READ | PROT_WRITE,
                               MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (trial == MAP_FAILED)
        end();
    ::raise(signal); // the handler is no longer there
}

void install()
{
    std::set_new_handler(end);
    struct sigaction action = {};
    action.sa_handler = handleCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : {SIGABRT, SIGBUS, SIGILL, SIGSEGV, SIGTRAP})
        ::sigaction(signal, &action, nullptr);
}

} // namespace

void set(std::uint64_t bytes, std::string sentence, int status)
{
    if (!isPossible)
        return;
    lastSentence = std::move(sentence);
    lastStatus = status;
    install();
    const rlimit limit = {bytes, bytes};
    ::setrlimit(RLIMIT_DATA, &limit);
}

} // namespace MemoryLimit
