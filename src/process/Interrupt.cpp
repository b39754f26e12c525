#include "Interrupt.h"

#include "FileDescriptor.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

namespace {

FileDescriptor checked(int descriptor)
{
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "Interrupt");
    return FileDescriptor(descriptor);
}

sigset_t stopSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

class Interrupt::Watcher
{
public:
    Watcher(std::function<void()> callback, std::optional<std::chrono::milliseconds> patience)
        : m_callback(std::move(callback)),
          m_patience(patience),
          m_signals(stopSignals()),
          m_signalDescriptor(checked(signalfd(-1, &m_signals, SFD_CLOEXEC))),
          m_quitDescriptor(checked(eventfd(0, EFD_CLOEXEC)))
    {
        // Threads started from now on inherit the mask, so that the signals reach only the watcher.
        pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
        m_thread = std::thread([this] { watch(); });
    }

    ~Watcher()
    {
        eventfd_write(m_quitDescriptor.value(), 1);
        m_thread.join();
        pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr);
    }

    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    int exitStatus() const { return m_signal == 0 ? 0 : 128 + m_signal; }

private:
    void watch()
    {
        pollfd descriptors[] = {{m_signalDescriptor.value(), POLLIN, 0},
                                {m_quitDescriptor.value(), POLLIN, 0}};
        while (poll(descriptors, 2, -1) >= 0 || errno == EINTR) {
            if ((descriptors[1].revents & POLLIN) != 0)
                return;
            signalfd_siginfo info{};
            if ((descriptors[0].revents & POLLIN) == 0 ||
                read(m_signalDescriptor.value(), &info, sizeof info) != sizeof info)
                continue;
            m_signal = static_cast<int>(info.ssi_signo);
            m_callback();
            // The next one meets a thread that does not block it and takes the default action.
            pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr);
            waitForEnd();
            return;
        }
    }

    /// Not with exit(), which would wait for whatever holds the main thread up.
    void waitForEnd()
    {
        pollfd descriptor = {m_quitDescriptor.value(), POLLIN, 0};
        const int limit = m_patience ? static_cast<int>(m_patience->count()) : -1;
        int count = 0;
        do {
            count = poll(&descriptor, 1, limit);
        } while (count < 0 && errno == EINTR);
        if (count == 0)
            _exit(0);
    }

    std::function<void()> m_callback;
    std::optional<std::chrono::milliseconds> m_patience;
    sigset_t m_signals;
    FileDescriptor m_signalDescriptor;
    FileDescriptor m_quitDescriptor;
    std::atomic<int> m_signal = 0;
    std::thread m_thread;
};

Interrupt::Interrupt(std::function<void()> callback,
                     std::optional<std::chrono::milliseconds> patience)
    : m_watcher(std::make_unique<Watcher>(std::move(callback), patience))
{}

Interrupt::~Interrupt() = default;

int Interrupt::exitStatus() const
{
    return m_watcher->exitStatus();
}
