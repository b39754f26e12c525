#include "BackgroundThreads.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

static void waitForWork()
{
    while (BackgroundThreads::isWorkLeft()) // or the test's time limit
        std::this_thread::yield();
}

TEST(BackgroundThreadsTest, WorkIsLeftUntilTheLastOfItHasEnded)
{
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    {
        BackgroundThreads threads;
        EXPECT_FALSE(BackgroundThreads::isWorkLeft());
        threads.start([released] { released.wait(); });
        EXPECT_TRUE(BackgroundThreads::isWorkLeft());
    }
    EXPECT_TRUE(BackgroundThreads::isWorkLeft()); // of threads that nobody waits for any more
    release.set_value();
    waitForWork();
}

TEST(BackgroundThreadsTest, WorkThatEndsInTimeIsNotLeft)
{
    bool isDone = false;
    {
        BackgroundThreads threads;
        threads.start([&isDone] { isDone = true; });
    }
    EXPECT_TRUE(isDone);
    EXPECT_FALSE(BackgroundThreads::isWorkLeft());
}

TEST(BackgroundThreadsTest, WhatWorkHasHeldIsGoneWhenItIsNotLeftAnyMore)
{
    struct Held
    {
        std::promise<bool>& wasLeft;
        explicit Held(std::promise<bool>& promise) : wasLeft(promise) {}
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        ~Held() { wasLeft.set_value(BackgroundThreads::isWorkLeft()); }
    };
    std::promise<bool> wasLeft;
    BackgroundThreads threads;
    threads.start([held = std::make_shared<Held>(wasLeft)] {});
    EXPECT_TRUE(wasLeft.get_future().get());
}

TEST(BackgroundThreadsTest, WorkThatCannotBeStartedIsNotLeft)
{
    pthread_attr_t usual;
    pthread_attr_t huge;
    ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
    ASSERT_EQ(::pthread_getattr_default_np(&huge), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0); // for which there is no room
    BackgroundThreads threads;
    EXPECT_THROW(threads.start([] {}), std::system_error);
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    EXPECT_FALSE(BackgroundThreads::isWorkLeft());
    ::pthread_attr_destroy(&usual);
    ::pthread_attr_destroy(&huge);
}

TEST(BackgroundThreadsTest, WhatWaitsForItsTurnIsDroppedAtTheEnd)
{
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::atomic<int> begun = 0;
    QFuture<int> dropped;
    {
        BackgroundThreads threads;
        for (int i = 0; i < 5; ++i) {
            threads.startInTurn([released, &begun] {
                ++begun;
                released.wait();
            });
        }
        while (begun < 2) // or the test's time limit
            std::this_thread::yield();
        dropped = threads.run<int>(&BackgroundThreads::startInTurn, [] { return 7; });
    }
    EXPECT_TRUE(dropped.isFinished());
    EXPECT_EQ(dropped.result(), 0);
    release.set_value();
    waitForWork();
    EXPECT_EQ(begun, 2);
}

// The sanitizers' own allocator keeps what is freed on purpose.
#ifndef PITHWISE_SANITIZED

static std::size_t residentPages()
{
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident;
}

TEST(BackgroundThreadsTest, MemoryThatWorkHasFreedIsGivenBack)
{
    using Block = std::array<char, 4096>;
    constexpr std::size_t count = 8192; // 32 MB, some pages of which stay in use
    const std::size_t before = residentPages();
    std::vector<std::unique_ptr<Block>> blocks(count);
    {
        BackgroundThreads threads;
        threads.start([&blocks] {
            for (auto& block : blocks)
                block = std::make_unique<Block>();
            for (std::size_t i = 0; i < count; ++i) {
                if (i % 256 != 0)
                    blocks[i].reset();
            }
        });
    }
    waitForWork();
    EXPECT_LT(residentPages(), before + count / 4);
}

#endif
