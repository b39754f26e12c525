#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The system's general clipboard. An object may be used by any thread, by one at a time. No call
/// takes longer than its limit, or 100 milliseconds where there is none, whatever the application
/// does that owns the clipboard (but serveUntilReplaced); none throws but for want of memory.
class Pasteboard
{
public:
    struct Representation
    {
        std::string type; // the system's name of it
        std::string data;
        std::string form; // how the system lays the data out; for the back end alone

        bool operator==(const Representation&) const = default;
    };
    using Item = std::vector<Representation>;

    struct Snapshot
    {
        std::vector<Item> items; // in the clipboard's order
        /// Whether there is nothing else on the clipboard that could be lost with it.
        bool isComplete = true;
    };

    virtual ~Pasteboard() = default;

    /// A number that is another one after the contents have been replaced, by whomever.
    virtual std::uint64_t changeCount() = 0;

    /// Everything on the clipboard that carries data. What cannot be had within `limit` is left
    /// out; an item of which nothing can be had stays, empty. Plain text is asked for first.
    virtual Snapshot snapshot(std::chrono::milliseconds limit) = 0;

    /// The plain text on the clipboard, if there is any: UTF-8 as the application wrote it, which
    /// may be invalid.
    virtual std::optional<std::string> plainText(std::chrono::milliseconds limit) = 0;

    /// Whether the last plainText() had nothing only because the application that owns the
    /// clipboard did not answer in time.
    virtual bool hasSilentOwner() { return false; }

    /// Empties the clipboard.
    virtual void clear() = 0;

    /// Adds `item` to what has been written since clear(). Where contents live in the process that
    /// wrote them, they last as long as this object.
    virtual void write(Item item) = 0;

    /// The same with an item of plain text, in UTF-8, in the forms that other programs ask for.
    virtual void writeText(std::string text) = 0;

    /// Gives what has been written to whatever keeps contents for programs that end. Whether that
    /// has it all: then this object is needed no more for it. Not where nothing written is left on
    /// the clipboard.
    virtual bool handOver(std::chrono::milliseconds limit) = 0;

    /// Returns when nothing that was written is on the clipboard any more, because another program
    /// has copied or the session has ended; at once where contents need nobody to serve them.
    virtual void serveUntilReplaced() = 0;

    /// The clipboard of the session the process runs in; one that stays empty where there is none
    /// that can be reached.
    static std::unique_ptr<Pasteboard> create();

protected:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = default;
    Pasteboard& operator=(const Pasteboard&) = default;
};
