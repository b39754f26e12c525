#pragma once

#include "Mutex.h"

/// Asks one summary run to stop. A new token is made for every run and never reset. Any thread may
/// call both functions.
class CancelToken
{
public:
    void cancel()
    {
        const MutexLock lock(m_mutex);
        m_flag = true;
    }

    bool isCancelled() const
    {
        const MutexLock lock(m_mutex);
        return m_flag;
    }

private:
    mutable Mutex m_mutex;
    bool m_flag PITHWISE_GUARDED_BY(m_mutex) = false;
};
