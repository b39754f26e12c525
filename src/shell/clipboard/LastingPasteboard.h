#pragma once

#include "Mutex.h"
#include "Pasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A clipboard that knows whether it still has what this program has written, so that this can
/// outlive the program. Unlike other pasteboards it may be used by several threads at once; they
/// wait for each other.
class LastingPasteboard : public Pasteboard
{
public:
    explicit LastingPasteboard(std::unique_ptr<Pasteboard> below);

    /// What was written last, if it is still on the clipboard and would be lost with this object.
    /// Empty if a clipboard manager takes it over. Takes at most twice the limit.
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
    /// The change count after this program last wrote; none before that.
    std::optional<std::uint64_t> m_written PITHWISE_GUARDED_BY(m_mutex);
};
