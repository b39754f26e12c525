#pragma once

#include "Pasteboard.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

/// A clipboard whose user is watched: tells of each look at the change count, so that a test can
/// let something happen between two of them. Its questions may take the time that a busy machine
/// needs.
class WatchedPasteboard : public Pasteboard
{
public:
    /// `looked` is called at the end of each look, with its number from 1, by the thread that
    /// looks.
    WatchedPasteboard(std::shared_ptr<Pasteboard> below, std::function<void(int look)> looked)
        : m_below(std::move(below)), m_looked(std::move(looked))
    {}

    std::uint64_t changeCount() override
    {
        const std::uint64_t count = m_below->changeCount();
        m_looked(++m_looks);
        return count;
    }

    Snapshot snapshot(std::chrono::milliseconds limit) override
    {
        return m_below->snapshot(std::max(limit, m_patience));
    }

    std::optional<std::string> plainText(std::chrono::milliseconds limit) override
    {
        return m_below->plainText(std::max(limit, m_patience));
    }

    void clear() override { m_below->clear(); }
    void write(Item item) override { m_below->write(std::move(item)); }
    void writeText(std::string text) override { m_below->writeText(std::move(text)); }

    bool handOver(std::chrono::milliseconds limit) override { return m_below->handOver(limit); }
    void serveUntilReplaced() override { m_below->serveUntilReplaced(); }

private:
    static constexpr std::chrono::milliseconds m_patience{30'000};

    const std::shared_ptr<Pasteboard> m_below;
    const std::function<void(int)> m_looked;
    int m_looks = 0;
};
