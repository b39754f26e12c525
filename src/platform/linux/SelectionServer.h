#pragma once

#include "Pasteboard.h"
#include "X11Connection.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class SelectionAnswers;

/// Offers contents as the X server's clipboard and counts the clipboard's changes of hands, on a
/// thread of its own, so that no other program ever waits for what this one is doing. Any thread,
/// one at a time.
class SelectionServer
{
public:
    /// Null where no X server answers.
    static std::unique_ptr<SelectionServer> create();

    /// What is offered ends with this.
    ~SelectionServer();
    SelectionServer(const SelectionServer&) = delete;
    SelectionServer& operator=(const SelectionServer&) = delete;

    /// A number that grows with every change of the clipboard's owner or contents.
    std::uint64_t changeCount();

    /// Makes this the clipboard's owner and offers `item` besides what it offers already.
    void offer(Pasteboard::Item item);
    /// Leaves the clipboard without an owner, whoever it has been.
    void release();

private:
    SelectionServer(std::unique_ptr<X11Connection> connection, int wakeDescriptor);
    void serve();
    void handle(const xcb_generic_event_t& event);
    void runOnThread(std::function<void()> work);
    void runWork();

    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_clipboard;
    std::uint8_t m_firstFixesEvent;
    std::unique_ptr<SelectionAnswers> m_answers; // of the thread
    std::uint32_t m_offerSequence = 0;           // of the thread: the request that took ownership
    std::atomic<std::uint64_t> m_changeCount = 0;
    int m_wakeDescriptor;
    std::mutex m_mutex;
    std::condition_variable m_workDone;
    std::function<void()> m_work; // under m_mutex
    bool m_isEnding = false;      // under m_mutex
    bool m_hasEnded = false;      // under m_mutex
    std::thread m_thread;
};
