#pragma once

#include "Interface.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The system's general clipboard. An object may be used by any thread, but by one at a time.
/// Whatever the application that owns the clipboard does, no call takes longer than its limit, or
/// than 100 milliseconds if it has no limit; only serveUntilReplaced() may. Nothing throws anything
/// but std::bad_alloc.
class Pasteboard : public Interface
{
public:
    struct Representation
    {
        std::string type; // the system's name for this kind of data
        std::string data;
        std::string form; // how the system lays out the data; only for the back end

        bool operator==(const Representation&) const = default;
    };
    using Item = std::vector<Representation>;

    struct Snapshot
    {
        std::vector<Item> items; // in the clipboard's order
        /// Whether these items are everything that would be lost if the clipboard were replaced.
        bool isComplete = true;
    };

    /// A number that changes whenever the contents are replaced, by any program.
    virtual std::uint64_t changeCount() = 0;

    /// Everything on the clipboard that carries data. What cannot be had within `limit` is left
    /// out; an item of which nothing can be had is kept, without representations. Plain text is
    /// asked for first.
    virtual Snapshot snapshot(std::chrono::milliseconds limit) = 0;

    /// The plain text on the clipboard, if there is any: UTF-8 as the application wrote it, which
    /// may be invalid.
    virtual std::optional<std::string> plainText(std::chrono::milliseconds limit) = 0;

    /// Whether the last plainText() returned nothing only because the application that owns the
    /// clipboard did not answer in time.
    virtual bool hasSilentOwner() { return false; }

    /// Empties the clipboard.
    virtual void clear() = 0;

    /// Adds `item` to what has been written since clear(). On systems where the contents stay in
    /// the process that wrote them, they last as long as this object.
    virtual void write(Item item) = 0;

    /// Writes plain text (UTF-8) as an item with all the forms that other programs ask for. It
    /// lasts as long as what write() adds.
    virtual void writeText(std::string text) = 0;

    /// Gives what has been written to the program that keeps contents for programs that end.
    /// Returns true if that has taken everything; then this object is no longer needed for it.
    /// Returns false also if nothing written is on the clipboard any more.
    virtual bool handOver(std::chrono::milliseconds limit) = 0;

    /// Returns when nothing that was written is on the clipboard any more, because another program
    /// has copied or the session has ended. Returns at once on systems where nobody needs to serve
    /// the contents.
    virtual void serveUntilReplaced() = 0;

    /// The clipboard of the session that the process runs in. If none can be reached, one that
    /// stays empty.
    static std::unique_ptr<Pasteboard> create();
};
