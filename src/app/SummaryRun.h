#pragma once

#include "Pithwise.h"

#include <QString>

#include <functional>
#include <memory>

class BackgroundThreads;
class MainThreadQueue;

/// Makes one summary on a thread of its own and reports about it on the main thread.
namespace SummaryRun {

struct Request
{
    QString text;
    SummaryMode mode;
    SummaryLength length;
};

/// What a run reports to. All are called on the main thread, and only as long as the run's token is
/// not cancelled. `status` and `output` are called at most once in each turn of the event loop,
/// with the latest text. The end is one call of either `finished` with the summary or `failed` with
/// a sentence.
struct Listener
{
    std::function<void(const QString&)> status;
    std::function<void(const QString&)> output;
    std::function<void(const QString&)> finished;
    std::function<void(const QString&)> failed;
};

/// Starts a run. Throws std::system_error if no thread can be started. Main thread.
void start(BackgroundThreads& threads, std::shared_ptr<MainThreadQueue> queue, Request request,
           std::shared_ptr<const CancelToken> token, Pithwise::Generate generate,
           Listener listener);

} // namespace SummaryRun
