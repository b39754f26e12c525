#pragma once

#include "Pasteboard.h"

/// For sessions whose clipboard cannot be reached: always empty.
class NullPasteboard : public Pasteboard
{
public:
    std::uint64_t changeCount() override { return 0; }
    Snapshot snapshot(std::chrono::milliseconds) override { return {}; }
    std::optional<std::string> plainText(std::chrono::milliseconds) override { return {}; }
    void clear() override {}
    void write(Item) override {}
    void writeText(std::string) override {}
    bool handOver(std::chrono::milliseconds) override { return false; }
    void serveUntilReplaced() override {}
};
