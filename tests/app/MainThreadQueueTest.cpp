#include "MainThreadQueue.h"

#include "WaitUntil.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

class MainThreadQueueTest : public testing::Test
{
protected:
    void TearDown() override
    {
        m_queue->close();
        QCoreApplication::sendPostedEvents(nullptr,
                                           QEvent::DeferredDelete); // what queues wait with
    }

    /// Posts a function that is called `name`.
    void post(const std::string& name)
    {
        m_queue->post([this, name] { m_called.push_back(name); });
    }

    /// Lets everything run that has been posted to another queue after this.
    static void waitForTurn()
    {
        const auto other = MainThreadQueue::create();
        bool isOver = false;
        other->post([&] { other->post([&isOver] { isOver = true; }); });
        EXPECT_TRUE(waitUntil([&isOver] { return isOver; }));
        other->close();
    }

    std::vector<std::string> m_called;
    const std::shared_ptr<MainThreadQueue> m_queue = MainThreadQueue::create();
};

TEST_F(MainThreadQueueTest, FunctionsOfAnotherThreadRunOnTheMainThreadInTheirOrder)
{
    QThread* ranOn = nullptr;
    std::thread([&] {
        m_queue->post([&ranOn] { ranOn = QThread::currentThread(); });
        post("second");
        post("third");
    }).join();
    EXPECT_THAT(m_called, ElementsAre());
    EXPECT_TRUE(waitUntil([this] { return m_called.size() == 2; }));
    EXPECT_EQ(ranOn, QThread::currentThread());
    EXPECT_THAT(m_called, ElementsAre("second", "third"));
}

TEST_F(MainThreadQueueTest, AQueueThatAnotherThreadHasMadeIsTheMainThreadsToo)
{
    std::shared_ptr<MainThreadQueue> queue;
    QThread* ranOn = nullptr;
    std::thread([&] {
        queue = MainThreadQueue::create();
        queue->post([&ranOn] { ranOn = QThread::currentThread(); });
    }).join();
    EXPECT_TRUE(waitUntil([&ranOn] { return ranOn != nullptr; }));
    EXPECT_EQ(ranOn, QThread::currentThread());
    queue->close();
}

TEST_F(MainThreadQueueTest, WhatAFunctionPostsRunsInAnotherTurn)
{
    m_queue->post([this] {
        post("later");
        m_called.emplace_back("first");
    });
    post("second");
    EXPECT_TRUE(waitUntil([this] { return !m_called.empty(); }));
    EXPECT_THAT(m_called, ElementsAre("first", "second"));
    EXPECT_TRUE(waitUntil([this] { return m_called.size() == 3; }));
    EXPECT_EQ(m_called.back(), "later");
}

TEST_F(MainThreadQueueTest, ClosedByOneOfItsFunctionsItRunsNoneOfTheOthers)
{
    post("first");
    m_queue->post([this] { m_queue->close(); });
    post("dropped");
    waitForTurn();
    EXPECT_THAT(m_called, ElementsAre("first"));
}

TEST_F(MainThreadQueueTest, ClosedItDropsWhatWaitsAndWhatStillComes)
{
    auto waiting = std::make_shared<int>();
    const std::weak_ptr heldByWaiting = waiting;
    m_queue->post([this, held = std::move(waiting)] { m_called.emplace_back("dropped"); });
    m_queue->close();
    EXPECT_TRUE(heldByWaiting.expired());
    auto late = std::make_shared<int>();
    const std::weak_ptr heldByLate = late;
    m_queue->post([this, held = std::move(late)] { m_called.emplace_back("too late"); });
    EXPECT_TRUE(heldByLate.expired());
    m_queue->close();
    waitForTurn();
    EXPECT_THAT(m_called, ElementsAre());
}

} // namespace
