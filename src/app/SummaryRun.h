#pragma once

#include "Pithwise.h"

#include <QString>

#include <functional>
#include <memory>

class BackgroundThreads;
class MainThreadQueue;

/// One summary, made on a thread of its own and heard of on the main thread.
namespace SummaryRun {

struct Request
{
    QString text;
    SummaryMode mode;
    SummaryLength length;
};

/// Called on the main thread, as long as the run's token is not cancelled: `status` and `output`
/// at most once a turn of the event loop, with the latest of each; at the end either `finished`
/// with the summary or `failed` with a sentence, after all the others.
struct Listener
{
    std::function<void(const QString&)> status;
    std::function<void(const QString&)> output;
    std::function<void(const QString&)> finished;
    std::function<void(const QString&)> failed;
};

/// Starts a run. Throws std::system_error where there can be no thread for it. Main thread.
void start(BackgroundThreads& threads, std::shared_ptr<MainThreadQueue> queue, Request request,
           std::shared_ptr<const CancelToken> token, Pithwise::Generate generate,
           Listener listener);

} // namespace SummaryRun
