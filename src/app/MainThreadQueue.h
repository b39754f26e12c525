#pragma once

#include "Mutex.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

/// Functions that any thread hands to the main thread, which runs those at hand once a turn of its
/// event loop, in their order: however fast they come, the user's events have their turn as well.
class MainThreadQueue : public std::enable_shared_from_this<MainThreadQueue>
{
public:
    /// Any thread, while there is an application object.
    static std::shared_ptr<MainThreadQueue> create();

    /// Any thread.
    void post(std::function<void()> function);

    /// Drops what is in the queue and all that still comes. Main thread.
    void close();

private:
    MainThreadQueue() = default;
    void runAll();
    bool isClosed() const;

    mutable Mutex m_mutex;
    std::vector<std::function<void()>> m_functions PITHWISE_GUARDED_BY(m_mutex);
    QTimer* m_timer PITHWISE_GUARDED_BY(m_mutex) = nullptr; // null once closed
};
