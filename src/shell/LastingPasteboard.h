#pragma once

#include "Pasteboard.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A clipboard that knows which text of this program is on it, so that the text can outlive the
/// program.
class LastingPasteboard : public Pasteboard
{
public:
    explicit LastingPasteboard(std::unique_ptr<Pasteboard> below) : m_below(std::move(below)) {}

    /// The text written last, if it is on the clipboard still and would be gone with this object:
    /// where a clipboard manager takes it over, it is not. Takes twice the limit at most.
    std::optional<std::string> leftover(std::chrono::milliseconds limit);

    std::uint64_t changeCount() override { return m_below->changeCount(); }
    std::vector<Item> items(std::chrono::milliseconds limit) override
    {
        return m_below->items(limit);
    }
    std::optional<std::string> plainText(std::chrono::milliseconds limit) override
    {
        return m_below->plainText(limit);
    }
    void clear() override;
    void write(Item item) override { m_below->write(std::move(item)); }
    void writeText(std::string text) override;
    bool handOver(std::chrono::milliseconds limit) override { return m_below->handOver(limit); }
    void serveUntilReplaced() override { m_below->serveUntilReplaced(); }

private:
    const std::unique_ptr<Pasteboard> m_below;
    std::optional<std::string> m_text;
};
