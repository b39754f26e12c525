#pragma once

#include "Mutex.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

/// Functions that any thread hands to the main thread. Once in each turn of its event loop, the
/// main thread runs those that are there, in order. However fast they come, the user's events get
/// their turn.
class MainThreadQueue
{
public:
    /// Makes an empty queue. Any thread, while there is an application object.
    static std::shared_ptr<MainThreadQueue> create();

    /// Adds `function` to the queue. Any thread.
    void post(std::function<void()> function);

    /// Drops everything in the queue, and from now on everything that is posted. Main thread.
    void close();

private:
    MainThreadQueue() = default;
    void runAll();
    bool isClosed() const;

    mutable Mutex m_mutex;
    std::vector<std::function<void()>> m_functions PITHWISE_GUARDED_BY(m_mutex);
    QTimer* m_timer PITHWISE_GUARDED_BY(m_mutex) = nullptr; // null once closed
};
