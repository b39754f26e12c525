#include "WaitUntil.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

bool waitUntil(const std::function<bool()>& condition)
{
    QTimer wakeUp; // for conditions that no event goes with, such as files
    wakeUp.start(std::chrono::milliseconds(2));
    const QDeadlineTimer deadline(std::chrono::minutes(1));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
