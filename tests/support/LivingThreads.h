#pragma once

#include <atomic>
#include <memory>

/// How many of the threads that have come by are still there. A copy counts the same threads; it
/// may be used by any of them. A thread is counted by one such count at most.
class LivingThreads
{
public:
    /// Counts the calling thread until it has ended.
    void countThisOne() const
    {
        thread_local End end;
        if (end.count)
            return;
        ++*m_count;
        end.count = m_count;
    }

    int number() const { return *m_count; }

private:
    using Count = std::shared_ptr<std::atomic<int>>;

    struct End
    {
        End() = default;
        ~End()
        {
            if (count)
                --*count;
        }
        End(const End&) = delete;
        End& operator=(const End&) = delete;

        Count count;
    };

    Count m_count = std::make_shared<std::atomic<int>>(0);
};
