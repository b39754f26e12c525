#include "Interrupt.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

static FileDescriptor checked(int descriptor)
{
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "Interrupt");
    return FileDescriptor(descriptor);
}

static sigset_t stopSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

Interrupt::Interrupt(std::function<void()> callback,
                     std::optional<std::chrono::milliseconds> patience)
    : m_callback(std::move(callback)),
      m_patience(patience),
      m_signals(stopSignals()),
      m_signalDescriptor(checked(signalfd(-1, &m_signals, SFD_CLOEXEC))),
      m_quitDescriptor(checked(eventfd(0, EFD_CLOEXEC)))
{
    // Threads started from now on inherit the mask, so that the signals reach only the watcher.
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    m_watcher = std::thread([this] { watch(); });
}

Interrupt::~Interrupt()
{
    eventfd_write(m_quitDescriptor.value(), 1);
    m_watcher.join();
    pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr);
}

void Interrupt::watch()
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
void Interrupt::waitForEnd()
{
    pollfd descriptor = {m_quitDescriptor.value(), POLLIN, 0};
    const int limit = m_patience ? static_cast<int>(m_patience->count()) : -1;
    if (TEMP_FAILURE_RETRY(poll(&descriptor, 1, limit)) == 0)
        _exit(0);
}
