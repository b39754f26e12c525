#pragma once

#include "FileDescriptor.h"
#include "Mutex.h"
#include "Pasteboard.h"
#include "X11Connection.h"

#include <atomic>
#include <functional>
#include <memory>
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

    /// Asks the clipboard manager to take over what is offered, and waits. Whether it has taken it.
    bool handOver(std::chrono::milliseconds limit);
    /// Waits until nothing is offered any more and all transfers have ended.
    void waitUntilReplaced();

private:
    enum class HandOver { none, asked, taken };

    SelectionServer(std::unique_ptr<X11Connection> connection, FileDescriptor wake);
    void serve();
    void handle(const xcb_generic_event_t& event);
    void runOnThread(std::function<void()> work);
    std::function<void()> takeWork();
    void runWork();
    void askManager();
    void endOffer();
    void noteAnswer(const xcb_selection_notify_event_t& notify);

    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_manager;     // the selection that a clipboard manager owns
    xcb_atom_t m_saveTargets; // what it is asked for
    std::uint8_t m_firstFixesEvent;
    std::unique_ptr<SelectionAnswers> m_answers; // of the thread
    std::uint32_t m_offerSequence = 0;           // of the thread: the request that took ownership
    bool m_isOwner = false;                      // of the thread
    std::atomic<std::uint64_t> m_changeCount = 0;
    FileDescriptor m_wake; // readable when the thread has something to look at
    Mutex m_mutex;
    ConditionVariable m_changed; // something of the following
    std::function<void()> m_work PITHWISE_GUARDED_BY(m_mutex);
    bool m_hasWork PITHWISE_GUARDED_BY(m_mutex) = false; // until it is done
    HandOver m_handOver PITHWISE_GUARDED_BY(m_mutex) = HandOver::none;
    bool m_isServing PITHWISE_GUARDED_BY(m_mutex) = false;
    bool m_isEnding PITHWISE_GUARDED_BY(m_mutex) = false;
    bool m_hasEnded PITHWISE_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
