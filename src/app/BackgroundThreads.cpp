#include "BackgroundThreads.h"

#include "FreedMemory.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

static std::atomic<int> allRunning = 0;

struct BackgroundThreads::Running
{
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;

    void add(int difference)
    {
        const std::lock_guard lock(mutex);
        allRunning += difference;
        count += difference;
        changed.notify_all();
    }
};

BackgroundThreads::BackgroundThreads() : m_running(std::make_shared<Running>()) {}

BackgroundThreads::~BackgroundThreads()
{
    std::unique_lock lock(m_running->mutex);
    m_running->changed.wait_for(lock, patience, [this] { return m_running->count == 0; });
}

bool BackgroundThreads::isWorkLeft()
{
    return allRunning != 0;
}

void BackgroundThreads::start(std::function<void()> work)
{
    m_running->add(1);
    try {
        std::thread([running = m_running, work = std::move(work)]() mutable {
            work();
            work = nullptr;          // so that all it held is gone when the thread no longer counts
            FreedMemory::giveBack(); // pictures, texts and models' answers leave much behind
            running->add(-1);
        }).detach();
    } catch (...) {
        m_running->add(-1);
        throw;
    }
}
