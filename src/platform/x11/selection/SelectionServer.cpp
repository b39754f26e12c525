#include "SelectionServer.h"

#include "SelectionAnswers.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xfixes.h>

#include <array>
#include <cerrno>
#include <utility>

namespace {

constexpr std::chrono::milliseconds setupLimit(500);
constexpr int idleMilliseconds = 1000; // between looks for forgotten transfers

} // namespace

std::unique_ptr<SelectionServer> SelectionServer::create()
{
    auto connection = X11Connection::open();
    if (!connection || !connection->startFixes(X11Connection::Clock::now() + setupLimit))
        return nullptr;
    FileDescriptor wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (wake.value() < 0)
        return nullptr;
    return std::unique_ptr<SelectionServer>(
        new SelectionServer(std::move(connection), std::move(wake)));
}

SelectionServer::SelectionServer(std::unique_ptr<X11Connection> connection, FileDescriptor wake)
    : m_connection(std::move(connection)),
      m_window(m_connection->createWindow()),
      m_clipboard(m_connection->atom("CLIPBOARD", X11Connection::Clock::now() + setupLimit)),
      m_manager(m_connection->atom("CLIPBOARD_MANAGER", X11Connection::Clock::now() + setupLimit)),
      m_saveTargets(m_connection->atom("SAVE_TARGETS", X11Connection::Clock::now() + setupLimit)),
      m_firstFixesEvent(m_connection->extension(xcb_xfixes_id)->first_event),
      m_answers(std::make_unique<SelectionAnswers>(*m_connection)),
      m_wake(std::move(wake))
{
    xcb_xfixes_select_selection_input(m_connection->get(), m_window, m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    // Every change after this constructor counts.
    m_connection->finish(X11Connection::Clock::now() + setupLimit);
    m_thread = std::thread([this] { serve(); });
}

SelectionServer::~SelectionServer()
{
    {
        const MutexLock lock(m_mutex);
        m_isEnding = true;
    }
    eventfd_write(m_wake.value(), 1);
    m_thread.join();
}

std::uint64_t SelectionServer::changeCount()
{
    runOnThread([] {}); // after which every change so far has been counted
    return m_changeCount;
}

void SelectionServer::offer(Pasteboard::Item item)
{
    const auto shared = std::make_shared<Pasteboard::Item>(std::move(item));
    runOnThread([this, shared] {
        m_answers->add(std::move(*shared));
        m_offerSequence =
            xcb_set_selection_owner(m_connection->get(), m_window, m_clipboard, XCB_CURRENT_TIME)
                .sequence;
        m_isOwner = true;
    });
}

void SelectionServer::release()
{
    runOnThread([this] {
        endOffer();
        xcb_set_selection_owner(m_connection->get(), XCB_NONE, m_clipboard, XCB_CURRENT_TIME);
    });
}

void SelectionServer::endOffer()
{
    m_answers->clear();
    m_isOwner = false;
}

/// As ICCCM has it: the property lists what to save.
void SelectionServer::askManager()
{
    m_connection->setValues(m_window, m_saveTargets, XCB_ATOM_ATOM, m_answers->targets());
    // Where there is no manager, the X server itself answers.
    xcb_convert_selection(m_connection->get(), m_window, m_manager, m_saveTargets, m_saveTargets,
                          XCB_CURRENT_TIME);
    xcb_flush(m_connection->get());
}

bool SelectionServer::handOver(std::chrono::milliseconds limit)
{
    const auto deadline = X11Connection::Clock::now() + limit;
    runOnThread([this] {
        // One that has not answered by now is not asked again: which of the questions an answer was
        // for could not be told.
        const MutexLock lock(m_mutex);
        if (m_handOver == HandOver::asked)
            return;
        m_handOver = m_isOwner ? HandOver::asked : HandOver::none;
        if (m_isOwner)
            askManager();
    });
    const MutexLock lock(m_mutex);
    while (m_handOver == HandOver::asked && !m_hasEnded && m_changed.waitUntil(m_mutex, deadline)) {
    }
    return m_handOver == HandOver::taken && !m_hasEnded;
}

/// The clipboard manager's.
void SelectionServer::noteAnswer(const xcb_selection_notify_event_t& notify)
{
    if (notify.selection != m_manager || notify.target != m_saveTargets)
        return;
    const MutexLock lock(m_mutex);
    m_handOver = notify.property == XCB_NONE ? HandOver::none : HandOver::taken;
    m_changed.notifyAll();
}

void SelectionServer::waitUntilReplaced()
{
    const MutexLock lock(m_mutex);
    while (m_isServing && !m_hasEnded)
        m_changed.wait(m_mutex);
}

/// Runs `work` on the thread and returns when it is done, or when the thread has lost its X server.
void SelectionServer::runOnThread(std::function<void()> work)
{
    const MutexLock lock(m_mutex);
    m_work = std::move(work);
    m_hasWork = true;
    eventfd_write(m_wake.value(), 1);
    while (m_hasWork && !m_hasEnded)
        m_changed.wait(m_mutex);
}

std::function<void()> SelectionServer::takeWork()
{
    const MutexLock lock(m_mutex);
    return std::exchange(m_work, nullptr);
}

void SelectionServer::runWork()
{
    const std::function<void()> work = takeWork();
    if (work) {
        work();
        // So that the caller finds the clipboard as it was told to be, and the change counted.
        m_connection->finish();
        for (std::size_t left = m_connection->waitingEvents(); left > 0; --left)
            handle(*m_connection->pendingEvent());
    }
    const MutexLock lock(m_mutex);
    m_hasWork = m_hasWork && !work;
    m_isServing = m_isOwner || m_answers->isTransferring();
    m_changed.notifyAll();
}

void SelectionServer::serve()
{
    std::array<pollfd, 2> descriptors = {
        {{xcb_get_file_descriptor(m_connection->get()), POLLIN, 0}, {m_wake.value(), POLLIN, 0}}};
    const auto isEnding = [this] {
        const MutexLock lock(m_mutex);
        return m_isEnding;
    };
    while (!isEnding() && !m_connection->isLost()) {
        runWork(); // between any two events, however many come
        X11Connection::Event event = m_connection->pendingEvent();
        if (!event) {
            if (m_answers->dropForgotten())
                runWork(); // tells those that wait
            // Sending reads as well: what it has read would not wake the call below.
            xcb_flush(m_connection->get());
            event = m_connection->pendingEvent();
        }
        if (event) {
            handle(*event);
            continue;
        }
        const int timeout = m_answers->isTransferring() ? idleMilliseconds : -1;
        if (poll(descriptors.data(), descriptors.size(), timeout) < 0 && errno != EINTR)
            break;
        eventfd_t ignored = 0;
        eventfd_read(m_wake.value(), &ignored);
    }
    // Whoever has asked in time waits for an answer. The system drops what is on its way to the X
    // server when a connection is closed with something left to read.
    m_connection->finish(X11Connection::Clock::now() + setupLimit);
    ++m_changeCount; // whatever was offered is no more
    const MutexLock lock(m_mutex);
    m_hasEnded = true;
    m_changed.notifyAll();
}

void SelectionServer::handle(const xcb_generic_event_t& event)
{
    const int type = event.response_type & 0x7F;
    if (type == XCB_SELECTION_REQUEST) {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == m_window && request.selection == m_clipboard)
            m_answers->answer(request);
    } else if (type == XCB_PROPERTY_NOTIFY) {
        m_answers->propertyChanged(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    } else if (type == XCB_DESTROY_NOTIFY) {
        m_answers->windowDestroyed(
            reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    } else if (type == XCB_SELECTION_CLEAR) {
        // One that is older than the last time the clipboard was taken is about the time before.
        if (static_cast<std::int32_t>(event.full_sequence - m_offerSequence) >= 0)
            endOffer();
    } else if (type == XCB_SELECTION_NOTIFY) {
        noteAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    } else if (type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        ++m_changeCount;
        if (notify.owner == m_window)
            m_answers->setTime(notify.selection_timestamp);
    }
}
