#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class Pasteboard;

/// A clipboard manager as desktops run one, that keeps contents when their owner asks it to: a
/// client of its own, on a thread of its own.
class ClipboardManager
{
public:
    enum class Manner { keeps, refuses, isFrozen };

    explicit ClipboardManager(Manner manner = Manner::keeps);
    ~ClipboardManager();
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    /// The targets that it was last asked to save.
    std::vector<std::string> asked();

private:
    xcb_atom_t atom(const std::string& name);
    void serve();
    void answer(const xcb_selection_request_event_t& request);
    void noteTargets(const xcb_selection_request_event_t& request);
    bool keep();

    const Manner m_manner;
    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    std::unique_ptr<Pasteboard> m_pasteboard; // what it keeps
    std::mutex m_mutex;
    std::vector<std::string> m_asked; // under m_mutex
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};
