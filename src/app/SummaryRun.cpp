#include "SummaryRun.h"

#include "BackgroundThreads.h"
#include "MainThreadQueue.h"
#include "Mutex.h"
#include "QtText.h"

#include <optional>
#include <utility>
#include <vector>

namespace SummaryRun {

namespace {

/// What is reported: one of the listener's functions.
using Kind = std::function<void(const QString&)> Listener::*;

/// What a run reports and the main thread has not handled yet.
class Updates : public std::enable_shared_from_this<Updates>
{
public:
    Updates(std::shared_ptr<MainThreadQueue> queue, std::shared_ptr<const CancelToken> token,
            Listener listener)
        : m_queue(std::move(queue)), m_token(std::move(token)), m_listener(std::move(listener))
    {}

    /// Adds an update and drops those that it makes obsolete. Called on the run's thread.
    void add(Kind kind, QString text)
    {
        const MutexLock lock(m_mutex);
        const bool isDelivering = !m_pending.empty();
        std::erase_if(m_pending, [kind](const Update& update) {
            return update.kind == kind || kind == &Listener::finished ||
                   (kind == &Listener::failed && update.kind == &Listener::status);
        });
        m_pending.push_back({kind, std::move(text)});
        if (!isDelivering)
            m_queue->post([self = shared_from_this()] { self->deliver(); });
    }

private:
    struct Update
    {
        Kind kind;
        QString text;
    };

    /// Hands all updates to the listener. Called on the main thread.
    void deliver()
    {
        std::vector<Update> updates;
        {
            const MutexLock lock(m_mutex);
            updates.swap(m_pending);
        }
        for (const Update& update : updates) {
            // The listener may have stopped the run.
            if (!m_token->isCancelled())
                (m_listener.*update.kind)(update.text);
        }
    }

    const std::shared_ptr<MainThreadQueue> m_queue;
    const std::shared_ptr<const CancelToken> m_token;
    const Listener m_listener; // called on the main thread only
    Mutex m_mutex;
    std::vector<Update> m_pending PITHWISE_GUARDED_BY(m_mutex);
};

void run(const Request& request, const CancelToken& token, const Pithwise::Generate& generate,
         Updates& updates)
{
    const auto add = [&updates](Kind kind) {
        return [&updates, kind](const std::string& text) {
            updates.add(kind, QtText::fromUtf8(text));
        };
    };
    try {
        const std::string text = QtText::toUtf8(QStringView(request.text).trimmed());
        const std::string summary =
            Pithwise::run(text, request.mode, request.length, token, add(&Listener::status),
                          add(&Listener::output), generate);
        updates.add(&Listener::finished, QtText::fromUtf8(summary));
    } catch (const std::exception& error) {
        updates.add(&Listener::failed, QtText::sentence(error));
    }
}

} // namespace

void start(BackgroundThreads& threads, std::shared_ptr<MainThreadQueue> queue, Request request,
           std::shared_ptr<const CancelToken> token, Pithwise::Generate generate, Listener listener)
{
    const auto updates = std::make_shared<Updates>(std::move(queue), token, std::move(listener));
    threads.start([request = std::move(request), token = std::move(token),
                   generate = std::move(generate),
                   updates] { run(request, *token, generate, *updates); });
}

} // namespace SummaryRun
