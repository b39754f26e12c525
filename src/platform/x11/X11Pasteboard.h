#pragma once

#include "Pasteboard.h"
#include "SelectionReader.h"
#include "SelectionServer.h"

/// The X server's clipboard, which holds one item at most.
class X11Pasteboard : public Pasteboard
{
public:
    explicit X11Pasteboard(std::unique_ptr<X11Connection> connection);

    /// Whether the X server can tell when the clipboard changes.
    bool isAvailable() const { return m_server != nullptr; }
    std::uint64_t changeCount() override { return m_server->changeCount(); }
    Snapshot snapshot(std::chrono::milliseconds limit) override;
    std::optional<std::string> plainText(std::chrono::milliseconds limit) override;
    bool hasSilentOwner() override { return m_hasSilentOwner; }
    void clear() override { m_server->release(); }
    void write(Item item) override { m_server->offer(std::move(item)); }
    void writeText(std::string text) override;
    bool handOver(std::chrono::milliseconds limit) override { return m_server->handOver(limit); }
    void serveUntilReplaced() override { m_server->waitUntilReplaced(); }

private:
    using Deadline = X11Connection::Deadline;
    struct Target
    {
        xcb_atom_t atom;
        std::string name;
    };

    std::optional<std::vector<Target>> targets(Deadline deadline);
    Snapshot fetch(const std::vector<Target>& targets, Deadline deadline);

    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<SelectionServer> m_server;
    SelectionReader m_reader;
    xcb_atom_t m_clipboard;
    bool m_hasSilentOwner = false;
};
