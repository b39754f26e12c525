#pragma once

#include "AppState.h"
#include "CancelToken.h"
#include "QtText.h"
#include "RecordingPasteboard.h"
#include "ScriptedCalls.h"
#include "ScriptedEngine.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QDeadlineTimer>
#include <QPromise>
#include <QTimer>

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
protected:
    using Tab = AppState::Tab;
    using Grabbed = std::optional<std::string>;

    AppStateFixture() { makeState(); }

    void TearDown() override
    {
        // Before the state, which would wait for them.
        engine.release();
        documents.release();
        captures.release();
    }

    void makeState()
    {
        state = std::make_unique<AppState>(services());
        QObject::connect(state.get(), &AppState::willChange, state.get(),
                         [this] { trace.push_back(snapshot()); });
    }

    AppServices services()
    {
        return {
            .readDocument =
                [this](const std::filesystem::path& file) { return documents.call(file); },
            .captureText = [this](ScreenGrab::Kind kind) { return captures.call(kind); },
            .clipboardText = [this]() -> std::optional<std::string> {
                ++clipboardReads;
                return clipboard;
            },
            .fetchPage = [this](std::string address) { return fetch(std::move(address)); },
            .grabSelection = [this] { return grab(); },
            .mayCaptureScreen = [this] { return mayCapture; },
            .isModelReady = [this] { return isModelReady; },
            .generate = engine.generate(),
            .pasteboard = std::make_shared<RecordingPasteboard>(pasteboardCalls),
            .appendToNote =
                [this](const std::filesystem::path& folder, const DailyNote::Entry& entry,
                       const QDateTime& time) {
                    notes.push_back({folder, entry, time});
                    if (!noteError.empty())
                        throw std::runtime_error(noteError);
                },
            .documentsFolder = [] { return std::filesystem::path("/documents"); },
            .now = [this] { return now; },
            .later =
                [this](std::chrono::milliseconds delay, std::function<void()> function) {
                    timers.emplace_back(clock + delay, std::move(function));
                },
        };
    }

    /// Runs the event loop until `condition` holds; false if that takes too long.
    static bool waitUntil(const std::function<bool()>& condition)
    {
        QTimer wakeUp; // for conditions that no event goes with
        wakeUp.start(std::chrono::milliseconds(2));
        const QDeadlineTimer deadline(std::chrono::seconds(60));
        while (!condition()) {
            if (deadline.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    /// Returns when the run of that token has ended and all it told has arrived.
    static void waitForEnd(const std::weak_ptr<const CancelToken>& token)
    {
        // Besides the run, the state alone holds it, at most.
        EXPECT_TRUE(waitUntil([&] { return token.use_count() <= 1; }));
    }

    /// The same for the latest run.
    void waitForEnd() const
    {
        const std::weak_ptr<const CancelToken> token = state->token();
        waitForEnd(token);
    }

    void waitForCalls(std::size_t count)
    {
        ASSERT_TRUE(waitUntil([&] { return engine.calls().size() >= count; }));
    }

    /// Starts a run, of which the engine's call is `number`.
    void startRun(const QString& text, std::size_t number = 0)
    {
        state->sourceText = text;
        state->summarize();
        waitForCalls(number + 1);
    }

    /// The same without any turn of the event loop, so that nothing of it arrives yet.
    void startRunUnheard(const QString& text)
    {
        state->sourceText = text;
        state->summarize();
        while (engine.calls().empty())
            std::this_thread::yield();
    }

    void waitForOutput(const QString& text)
    {
        EXPECT_TRUE(waitUntil([&] { return state->output.get() == text; }))
            << state->output->toStdString();
    }
    void waitForError(const QString& text)
    {
        EXPECT_TRUE(waitUntil([&] { return state->errorMessage.get() == text; })) << snapshot();
    }
    void waitForSource(const QString& text, const QString& label)
    {
        EXPECT_TRUE(waitUntil([&] { return state->sourceText.get() == text; })) << snapshot();
        EXPECT_EQ(state->sourceLabel.get(), label);
    }

    void advance(std::chrono::milliseconds time)
    {
        clock += time;
        while (!timers.empty() && timers.front().first <= clock) {
            const auto function = timers.front().second;
            timers.pop_front();
            function();
        }
    }

    void expectIdle(const std::optional<QString>& error = std::nullopt)
    {
        EXPECT_FALSE(state->isWorking);
        EXPECT_EQ(state->status.get(), "");
        EXPECT_EQ(state->errorMessage.get(), error);
    }
    void expectWorking(const QString& status)
    {
        EXPECT_TRUE(state->isWorking);
        EXPECT_EQ(state->status.get(), status);
        EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    }

    /// What a view would show.
    std::string snapshot() const
    {
        const QString text =
            QStringLiteral("%1 | %2 (%3) | %4 | %5 %6 | %7")
                .arg(QtText::fromUtf8(AppState::rawValue(state->tab)), state->sourceText.get(),
                     state->sourceLabel.get(), state->output.get(),
                     state->isWorking ? QStringLiteral("working") : QStringLiteral("idle"),
                     state->status.get(), state->errorMessage.get().value_or("no error"));
        return text.toStdString();
    }

    QCoro::Task<std::string> fetch(std::string address)
    {
        addresses.push_back(std::move(address));
        pages.emplace_back().start();
        const QFuture<std::string> page = pages.back().future();
        co_return co_await page;
    }
    QCoro::Task<Grabbed> grab()
    {
        selections.emplace_back().start();
        const QFuture<Grabbed> selection = selections.back().future();
        co_return co_await selection;
    }
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
    std::atomic<int> clipboardReads = 0;
    std::vector<std::string> addresses;
    std::deque<QPromise<std::string>> pages;
    std::deque<QPromise<Grabbed>> selections;
    bool mayCapture = true;
    bool isModelReady = true;
    std::vector<std::string> pasteboardCalls;
    std::vector<Note> notes;
    std::string noteError;
    QDateTime now{QDate(2024, 2, 29), QTime(13, 5)};
    std::chrono::milliseconds clock{0};
    std::deque<std::pair<std::chrono::milliseconds, std::function<void()>>> timers;

    std::vector<std::string> trace; // before each assignment
    std::unique_ptr<AppState> state;
};
