#pragma once

#include "Mutex.h"
#include "Pasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A clipboard that knows whether what this program has written is on it, so that it can outlive
/// the program. Unlike others it may be used by several threads at once, of which one waits for the
/// other.
class LastingPasteboard : public Pasteboard
{
public:
    explicit LastingPasteboard(std::unique_ptr<Pasteboard> below);

    /// What was written last, if it is on the clipboard still and would be gone with this object:
    /// where a clipboard manager takes it over, there is nothing. Takes twice the limit at most.
    std::vector<Item> leftover(std::chrono::milliseconds limit);

    std::uint64_t changeCount() override;
    Snapshot snapshot(std::chrono::milliseconds limit) override;
    std::optional<std::string> plainText(std::chrono::milliseconds limit) override;
    bool hasSilentOwner() override;
    void clear() override;
    void write(Item item) override;
    void writeText(std::string text) override;
    bool handOver(std::chrono::milliseconds limit) override;
    void serveUntilReplaced() override;

private:
    Mutex m_mutex;
    const std::unique_ptr<Pasteboard> m_below;
    /// The change that was ours; none before the first.
    std::optional<std::uint64_t> m_written PITHWISE_GUARDED_BY(m_mutex);
};
