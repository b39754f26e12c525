#pragma once

#include "FileDescriptor.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <thread>

/// Turns the user's wish to stop the program (Ctrl+C, or the session asking it to end) into a call
/// while it is alive. The second such wish ends the process at once, as without it.
///
/// Made and destroyed on the main thread, before any other thread is started; at most one at a
/// time.
class Interrupt
{
public:
    /// `callback` runs once at most, on a thread of its own, and must not block. Where the process
    /// is still alive after `patience` from then, with this not destroyed, it ends at once, with
    /// the status 0, as if nothing were left to be done.
    explicit Interrupt(std::function<void()> callback,
                       std::optional<std::chrono::milliseconds> patience = std::nullopt);
    /// No callback starts after this; one that runs is waited for.
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// The exit status the process should end with if it was interrupted, else 0. Any thread.
    int exitStatus() const { return m_signal == 0 ? 0 : 128 + m_signal; }

private:
    void watch();
    void waitForEnd();

    std::function<void()> m_callback;
    std::optional<std::chrono::milliseconds> m_patience;
    sigset_t m_signals;
    FileDescriptor m_signalDescriptor;
    FileDescriptor m_quitDescriptor;
    std::atomic<int> m_signal = 0;
    std::thread m_watcher;
};
