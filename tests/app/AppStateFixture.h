#pragma once

#include "AppState.h"
#include "CancelToken.h"
#include "ScriptedCalls.h"
#include "ScriptedEngine.h"
#include "WaitUntil.h"

#include <QCoroTask>
#include <QPromise>

#include <gmock/gmock.h>

#include <atomic>
#include <deque>
#include <memory>

/// So that failures show texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

/// An AppState of which the test holds all the strings.
class AppStateFixture : public testing::Test
{
public:
    ~AppStateFixture() override;

protected:
    using Tab = AppState::Tab;
    using Grabbed = std::optional<std::string>;

    AppStateFixture();

    void TearDown() override;

    void makeState();

    AppServices services();

    /// Returns when only that many runs go on and all that the others told has arrived. Requires:
    /// the engine has been called by all of them.
    void waitForRuns(int number) const;

    /// The same without any turn of the event loop, so that nothing of it arrives yet.
    void waitForRunsUnheard(int number) const;

    /// Returns when all that other threads have told by now has arrived.
    void hearAll() const;

    void waitForCalls(std::size_t count);

    /// Starts a run, of which the engine's call is `number`.
    void startRun(const QString& text, std::size_t number = 0);

    /// The same without any turn of the event loop, so that nothing of it arrives yet.
    void startRunUnheard(const QString& text);

    void waitForOutput(const QString& text);
    void waitForError(const QString& text);
    void waitForSource(const QString& text, const QString& label);

    void advance(std::chrono::milliseconds time);

    void expectIdle(const std::optional<QString>& error = std::nullopt);
    void expectWorking(const QString& status);

    /// What a view would show.
    std::string snapshot() const;

    void lookLater();

    QCoro::Task<std::string> fetch(std::string address);
    QCoro::Task<Grabbed> grab();
    template <typename Result>
    static void answer(QPromise<Result>& promise, const Result& result)
    {
        promise.addResult(result);
        promise.finish();
    }
    template <typename Result>
    static void fail(QPromise<Result>& promise, const std::string& sentence)
    {
        promise.setException(std::make_exception_ptr(std::runtime_error(sentence)));
        promise.finish();
    }

    struct Note
    {
        std::filesystem::path folder;
        DailyNote::Entry entry;
        QDateTime time;
    };

    ScriptedEngine engine;
    ScriptedCalls<std::filesystem::path, std::string> documents;
    ScriptedCalls<ScreenGrab::Kind, std::string> captures;
    std::optional<std::string> clipboard; // set while nothing reads it
    std::string clipboardError;           // this too
    std::atomic<int> clipboardReads = 0;
    std::vector<std::string> addresses;
    std::deque<QPromise<std::string>> pages;
    std::deque<QPromise<Grabbed>> selections;
    bool mayCapture = true;
    bool isModelReady = true;
    std::vector<std::string> pasteboardCalls;
    std::vector<Note> notes;
    std::string noteError;
    std::string folderError;
    QDateTime now{QDate(2024, 2, 29), QTime(13, 5)};
    std::chrono::milliseconds clock{0};
    std::deque<std::pair<std::chrono::milliseconds, std::function<void()>>> timers;

    /// What a view has shown, which looks once in each turn of the event loop in which it is told
    /// of a change.
    std::vector<std::string> moments;
    bool isLooking = false; // later in this turn
    std::unique_ptr<AppState> state;
};
