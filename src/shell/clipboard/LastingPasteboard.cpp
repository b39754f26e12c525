#include "LastingPasteboard.h"

#include <utility>

LastingPasteboard::LastingPasteboard(std::unique_ptr<Pasteboard> below) : m_below(std::move(below))
{}

std::vector<Pasteboard::Item> LastingPasteboard::leftover(std::chrono::milliseconds limit)
{
    const MutexLock lock(m_mutex);
    if (m_written && m_below->changeCount() == m_written && !m_below->handOver(limit))
        return m_below->snapshot(limit).items;
    return {};
}

std::uint64_t LastingPasteboard::changeCount()
{
    const MutexLock lock(m_mutex);
    return m_below->changeCount();
}

Pasteboard::Snapshot LastingPasteboard::snapshot(std::chrono::milliseconds limit)
{
    const MutexLock lock(m_mutex);
    return m_below->snapshot(limit);
}

std::optional<std::string> LastingPasteboard::plainText(std::chrono::milliseconds limit)
{
    const MutexLock lock(m_mutex);
    return m_below->plainText(limit);
}

bool LastingPasteboard::hasSilentOwner()
{
    const MutexLock lock(m_mutex);
    return m_below->hasSilentOwner();
}

void LastingPasteboard::clear()
{
    const MutexLock lock(m_mutex);
    m_below->clear();
    m_written = m_below->changeCount();
}

void LastingPasteboard::write(Item item)
{
    const MutexLock lock(m_mutex);
    m_below->write(std::move(item));
    m_written = m_below->changeCount();
}

void LastingPasteboard::writeText(std::string text)
{
    const MutexLock lock(m_mutex);
    m_below->writeText(std::move(text));
    m_written = m_below->changeCount();
}

bool LastingPasteboard::handOver(std::chrono::milliseconds limit)
{
    const MutexLock lock(m_mutex);
    return m_below->handOver(limit);
}

void LastingPasteboard::serveUntilReplaced()
{
    const MutexLock lock(m_mutex);
    m_below->serveUntilReplaced();
}
