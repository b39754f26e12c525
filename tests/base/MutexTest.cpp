#include "Mutex.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A number that others wait for.
class Counter
{
public:
    /// So that all who wait look at it.
    void increase()
    {
        const MutexLock lock(m_mutex);
        ++m_value;
        m_changed.notifyAll();
    }

    /// So that only one does.
    void increaseForOne()
    {
        const MutexLock lock(m_mutex);
        ++m_value;
        m_changed.notifyOne();
    }

    void waitFor(int value)
    {
        const MutexLock lock(m_mutex);
        while (m_value < value)
            m_changed.wait(m_mutex);
    }

    /// Whether it has come to that.
    bool waitFor(int value, Clock::time_point deadline)
    {
        const MutexLock lock(m_mutex);
        while (m_value < value) {
            if (!m_changed.waitUntil(m_mutex, deadline))
                return false;
        }
        return true;
    }

private:
    Mutex m_mutex;
    ConditionVariable m_changed;
    int m_value PITHWISE_GUARDED_BY(m_mutex) = 0;
};

TEST(ConditionVariableTest, EveryThreadThatWaitsIsWoken)
{
    Counter counter;
    Counter done;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            counter.waitFor(3);
            done.increase();
        });
    }
    for (int i = 0; i < 3; ++i)
        counter.increase();
    done.waitFor(8); // or the test's time limit
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ConditionVariableTest, OneThreadThatWaitsIsWoken)
{
    Counter ping;
    Counter pong;
    std::thread other([&] {
        for (int i = 1; i <= 1000; ++i) {
            ping.waitFor(i);
            pong.increaseForOne();
        }
    });
    for (int i = 1; i <= 1000; ++i) {
        ping.increaseForOne();
        pong.waitFor(i); // or the test's time limit
    }
    other.join();
}

TEST(ConditionVariableTest, AWaitEndsAtItsDeadline)
{
    Counter counter;
    const Clock::time_point deadline = Clock::now() + 20ms;
    EXPECT_FALSE(counter.waitFor(1, deadline));
    EXPECT_GE(Clock::now(), deadline);
    EXPECT_FALSE(counter.waitFor(1, deadline)); // one that has passed
}

TEST(ConditionVariableTest, AWaitEndsBeforeItsDeadlineWhereThereIsNothingLeftToWaitFor)
{
    Counter counter;
    std::thread other([&] { counter.increase(); });
    EXPECT_TRUE(counter.waitFor(1, Clock::now() + 1h));
    other.join();
}

} // namespace
