#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// Clang checks at compile time that whatever is marked PITHWISE_GUARDED_BY is used only while its
// mutex is held. Other compilers see plain code.
#if defined(__clang__)
#define PITHWISE_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define PITHWISE_THREAD_ATTRIBUTE(x)
#endif

#define PITHWISE_CAPABILITY(x) PITHWISE_THREAD_ATTRIBUTE(capability(x))
#define PITHWISE_SCOPED_CAPABILITY PITHWISE_THREAD_ATTRIBUTE(scoped_lockable)
#define PITHWISE_GUARDED_BY(x) PITHWISE_THREAD_ATTRIBUTE(guarded_by(x))
#define PITHWISE_REQUIRES(x) PITHWISE_THREAD_ATTRIBUTE(requires_capability(x))
#define PITHWISE_ACQUIRE(...) PITHWISE_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define PITHWISE_RELEASE(...) PITHWISE_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))

/// std::mutex with these annotations. Locked only through MutexLock and ConditionVariable.
class PITHWISE_CAPABILITY("mutex") Mutex
{
public:
    void lock() PITHWISE_ACQUIRE() { m_mutex.lock(); }
    void unlock() PITHWISE_RELEASE() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

/// Holds a Mutex from construction to destruction.
class PITHWISE_SCOPED_CAPABILITY MutexLock
{
public:
    explicit MutexLock(Mutex& mutex) PITHWISE_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~MutexLock() PITHWISE_RELEASE() { m_mutex.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& m_mutex;
};

/// std::condition_variable_any for a Mutex. Who waits holds the mutex, which others can have
/// meanwhile, and asks in a loop: "while (!isDone) changed.wait(mutex);". A condition handed over
/// as a function would escape the checks.
class ConditionVariable
{
public:
    void wait(Mutex& mutex) PITHWISE_REQUIRES(mutex) { m_condition.wait(mutex); }

    /// Returns false once `deadline` has passed.
    bool waitUntil(Mutex& mutex, std::chrono::steady_clock::time_point deadline)
        PITHWISE_REQUIRES(mutex)
    {
        return m_condition.wait_until(mutex, deadline) == std::cv_status::no_timeout;
    }

    void notifyOne() { m_condition.notify_one(); }
    void notifyAll() { m_condition.notify_all(); }

private:
    std::condition_variable_any m_condition;
};
