#include "BackgroundThreads.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

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
    while (BackgroundThreads::isWorkLeft()) // or the test's time limit
        std::this_thread::yield();
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
