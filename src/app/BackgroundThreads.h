#pragma once

#include <QFuture>
#include <QPromise>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

/// Work that blocks, each piece on a thread of its own: in a pool, a few that hang would hold up
/// all others. One thread at a time.
///
/// The threads are never waited for longer than a moment, since nothing can end one that hangs in a
/// library. What they work with must be theirs.
class BackgroundThreads
{
public:
    /// How long the destructor waits at most.
    static constexpr std::chrono::milliseconds patience{500};

    BackgroundThreads();
    /// Waits for the threads, so that in the usual case none runs while the process ends; those
    /// that go on for too long are left to it.
    ~BackgroundThreads();
    BackgroundThreads(const BackgroundThreads&) = delete;
    BackgroundThreads& operator=(const BackgroundThreads&) = delete;

    /// Whether work of any of these objects goes on, also of one that is destroyed. Then the
    /// process must end without destroying anything more, such as the libraries' static objects,
    /// because the work may be using it. Any thread.
    static bool isWorkLeft();

    /// Throws std::system_error where there can be no more threads. `work` must not throw.
    void start(std::function<void()> work);

    /// The same for work that takes much memory and processor time: at most two pieces of it go on
    /// at a time, the others wait their turn, without a thread.
    void startInTurn(std::function<void()> work);
    static constexpr int mostInTurn = 2;

    /// One of these two.
    using Start = void (BackgroundThreads::*)(std::function<void()>);

    /// Starts work that has a result, an empty one where the work is dropped before its turn: who
    /// waits for it takes it out in any case.
    template <typename Result>
    QFuture<Result> run(Start begin, std::function<Result()> work)
    {
        const auto promised = std::make_shared<Promised<Result>>();
        QFuture<Result> future = promised->promise.future();
        (this->*begin)([promised, work = std::move(work)] { promised->finish(work()); });
        return future;
    }

private:
    class Running;

    template <typename Result>
    struct Promised
    {
        QPromise<Result> promise;

        Promised() { promise.start(); }
        ~Promised()
        {
            if (promise.future().resultCount() == 0)
                finish({});
        }
        Promised(const Promised&) = delete;
        Promised& operator=(const Promised&) = delete;

        void finish(Result result)
        {
            promise.addResult(std::move(result));
            promise.finish();
        }
    };

    std::shared_ptr<Running> m_running;
};
