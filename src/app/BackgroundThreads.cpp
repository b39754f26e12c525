#include "BackgroundThreads.h"

#include "FreedMemory.h"
#include "Mutex.h"

#include <atomic>
#include <deque>
#include <thread>
#include <utility>

static std::atomic<int> allRunning = 0;

class BackgroundThreads::Running
{
public:
    using Work = std::function<void()>;

    void add(int difference)
    {
        const MutexLock lock(m_mutex);
        allRunning += difference;
        m_count += difference;
        m_changed.notifyAll();
    }

    /// Waits until nothing runs any more, or the deadline has passed.
    void waitForEnd(std::chrono::steady_clock::time_point deadline)
    {
        const MutexLock lock(m_mutex);
        while (m_count > 0 && m_changed.waitUntil(m_mutex, deadline)) {
        }
    }

    /// Whether work of that kind may begin now. If not, it waits.
    bool takeTurn(Work& work)
    {
        const MutexLock lock(m_mutex);
        if (m_inTurn == mostInTurn) {
            m_waiting.push_back(std::move(work));
            return false;
        }
        ++m_inTurn;
        return true;
    }

    /// The work whose turn comes when another's has ended; nothing where none waits.
    Work passTurn()
    {
        const MutexLock lock(m_mutex);
        if (m_waiting.empty()) {
            --m_inTurn;
            return nullptr;
        }
        Work next = std::move(m_waiting.front());
        m_waiting.pop_front();
        return next;
    }

    /// What waits for its turn, and does so no longer.
    std::deque<Work> takeWaiting()
    {
        const MutexLock lock(m_mutex);
        return std::exchange(m_waiting, {});
    }

private:
    Mutex m_mutex;
    ConditionVariable m_changed; // the following
    int m_count PITHWISE_GUARDED_BY(m_mutex) = 0;
    int m_inTurn PITHWISE_GUARDED_BY(m_mutex) = 0;
    std::deque<Work> m_waiting PITHWISE_GUARDED_BY(m_mutex); // for their turn
};

BackgroundThreads::BackgroundThreads() : m_running(std::make_shared<Running>()) {}

BackgroundThreads::~BackgroundThreads()
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    const auto dropped = m_running->takeWaiting();
    m_running->waitForEnd(deadline);
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
