#pragma once

#include "Pasteboard.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A clipboard in memory that writes down how it is used. One thread at a time.
class RecordingPasteboard : public Pasteboard
{
public:
    /// Calls are appended to `calls`, which outlives this.
    explicit RecordingPasteboard(std::vector<std::string>& calls) : m_calls(calls) {}

    /// The contents, and what other applications make of them.
    std::vector<Item> contents;
    /// How many more looks at the change count find nothing before `copied` is there; never for -1.
    int looksUntilCopy = -1;
    std::vector<Item> copied;
    /// Whether a snapshot has everything.
    bool isComplete = true;
    /// What handOver() says.
    bool isHandedOver = false;
    /// Called with the limit of a question, for the time that it takes.
    std::function<void(std::chrono::milliseconds)> wait = [](std::chrono::milliseconds) {};

    std::uint64_t changeCount() override
    {
        m_calls.emplace_back("changeCount");
        if (looksUntilCopy >= 0 && looksUntilCopy-- == 0) {
            contents = copied;
            ++m_count;
        }
        return m_count;
    }

    Snapshot snapshot(std::chrono::milliseconds limit) override
    {
        wait(limit);
        m_calls.emplace_back("snapshot");
        return {contents, isComplete};
    }

    std::optional<std::string> plainText(std::chrono::milliseconds limit) override
    {
        wait(limit);
        m_calls.emplace_back("plainText");
        for (const Item& item : contents) {
            for (const Representation& representation : item) {
                if (representation.type == "text/plain")
                    return representation.data;
            }
        }
        return std::nullopt;
    }

    void clear() override
    {
        m_calls.emplace_back("clear");
        contents.clear();
        ++m_count;
    }

    void write(Item item) override
    {
        std::string call = "write";
        for (const Representation& representation : item)
            call += ' ' + representation.type;
        m_calls.push_back(call);
        contents.push_back(std::move(item));
    }

    void writeText(std::string text) override
    {
        m_calls.push_back("writeText " + text);
        contents.push_back({{"text/plain", std::move(text), ""}});
    }

    bool handOver(std::chrono::milliseconds) override
    {
        m_calls.emplace_back("handOver");
        return isHandedOver;
    }

    void serveUntilReplaced() override { m_calls.emplace_back("serveUntilReplaced"); }

private:
    std::vector<std::string>& m_calls;
    std::uint64_t m_count = 7;
};
