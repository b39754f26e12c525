#include "MainThreadQueue.h"

#include <QCoreApplication>

#include <utility>

std::shared_ptr<MainThreadQueue> MainThreadQueue::create()
{
    std::shared_ptr<MainThreadQueue> queue(new MainThreadQueue);
    auto* const timer = new QTimer;
    timer->setSingleShot(true);
    timer->moveToThread(QCoreApplication::instance()->thread());
    QObject::connect(timer, &QTimer::timeout, timer, [weak = std::weak_ptr(queue)] {
        if (const auto locked = weak.lock())
            locked->runAll();
    });
    const MutexLock lock(queue->m_mutex);
    queue->m_timer = timer;
    return queue;
}

void MainThreadQueue::post(std::function<void()> function)
{
    const MutexLock lock(m_mutex);
    if (m_timer == nullptr)
        return;
    m_functions.push_back(std::move(function));
    // A timer is used because an event posted while others are delivered is delivered in the same
    // turn. The lock is held until the event is posted, so that the timer still exists then.
    if (m_functions.size() == 1)
        QMetaObject::invokeMethod(
            m_timer, [timer = m_timer] { timer->start(0); }, Qt::QueuedConnection);
}

void MainThreadQueue::close()
{
    std::vector<std::function<void()>> dropped; // destroyed after the lock
    const MutexLock lock(m_mutex);
    dropped.swap(m_functions);
    if (m_timer != nullptr)
        m_timer->deleteLater(); // not deleted at once: its own signal may have led here
    m_timer = nullptr;
}

bool MainThreadQueue::isClosed() const
{
    const MutexLock lock(m_mutex);
    return m_timer == nullptr;
}

void MainThreadQueue::runAll()
{
    std::vector<std::function<void()>> functions;
    {
        const MutexLock lock(m_mutex);
        functions.swap(m_functions);
    }
    for (const std::function<void()>& function : functions) {
        if (isClosed()) // an earlier function may have closed the queue
            return;
        function();
    }
}
