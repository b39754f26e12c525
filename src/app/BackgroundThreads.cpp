#include "BackgroundThreads.h"

#include "FreedMemory.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

static std::atomic<int> allRunning = 0;

struct BackgroundThreads::Running
{
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
    int inTurn = 0;
    std::deque<std::function<void()>> waiting; // for their turn

    void add(int difference)
    {
        const std::lock_guard lock(mutex);
        allRunning += difference;
        count += difference;
        changed.notify_all();
    }

    /// Whether work of that kind may begin now. If not, it waits.
    bool takeTurn(std::function<void()>& work)
    {
        const std::lock_guard lock(mutex);
        if (inTurn == mostInTurn) {
            waiting.push_back(std::move(work));
            return false;
        }
        ++inTurn;
        return true;
    }

    /// The work whose turn comes when another's has ended; nothing where none waits.
    std::function<void()> passTurn()
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty()) {
            --inTurn;
            return nullptr;
        }
        std::function<void()> next = std::move(waiting.front());
        waiting.pop_front();
        return next;
    }
};

BackgroundThreads::BackgroundThreads() : m_running(std::make_shared<Running>()) {}

BackgroundThreads::~BackgroundThreads()
{
    std::deque<std::function<void()>> dropped; // destroyed after the lock
    std::unique_lock lock(m_running->mutex);
    dropped.swap(m_running->waiting);
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

void BackgroundThreads::startInTurn(std::function<void()> work)
{
    if (!m_running->takeTurn(work))
        return;
    try {
        start([running = m_running, work = std::move(work)]() mutable {
            while (work) {
                work();
                work = nullptr; // before another's begins
                work = running->passTurn();
                if (work)
                    FreedMemory::giveBack();
            }
        });
    } catch (...) {
        m_running->passTurn();
        throw;
    }
}
