#include "AppStateFixture.h"

#include "QtText.h"
#include "RecordingPasteboard.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QTimer>

AppStateFixture::AppStateFixture()
{
    makeState();
}

AppStateFixture::~AppStateFixture() = default;

void AppStateFixture::TearDown()
{
    // Before the state, which would wait for them.
    engine.release();
    documents.release();
    captures.release();
}

void AppStateFixture::makeState()
{
    state = std::make_unique<AppState>(services());
    moments.clear();
    isLooking = false;
    QObject::connect(state.get(), &AppState::willChange, state.get(), [this] { lookLater(); });
}

void AppStateFixture::lookLater()
{
    if (std::exchange(isLooking, true))
        return;
    QMetaObject::invokeMethod(
        state.get(),
        [this] {
            isLooking = false;
            moments.push_back(snapshot());
        },
        Qt::QueuedConnection);
}

AppServices AppStateFixture::services()
{
    return {
        .readDocument = [this](const std::filesystem::path& file) { return documents.call(file); },
        .captureText = [this](ScreenGrab::Kind kind) { return captures.call(kind); },
        .clipboardText = [this]() -> std::optional<std::string> {
            ++clipboardReads;
            if (!clipboardError.empty())
                throw std::runtime_error(clipboardError);
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
        .documentsFolder =
            [this] {
                if (!folderError.empty())
                    throw std::runtime_error(folderError);
                return std::filesystem::path("/documents");
            },
        .now = [this] { return now; },
        .later =
            [this](std::chrono::milliseconds delay, std::function<void()> function) {
                timers.emplace_back(clock + delay, std::move(function));
            },
    };
}

void AppStateFixture::waitForRuns(int number) const
{
    waitForRunsUnheard(number);
    hearAll();
}

void AppStateFixture::hearAll() const
{
    QCoreApplication::sendPostedEvents(); // starts the timer that hands over what they told
    QTimer later;
    later.setSingleShot(true);
    later.start(0);
    EXPECT_TRUE(waitUntil([&] { return !later.isActive(); }));
}

void AppStateFixture::waitForRunsUnheard(int number) const
{
    while (engine.threads() > number)
        std::this_thread::yield();
}

void AppStateFixture::waitForCalls(std::size_t count)
{
    ASSERT_TRUE(waitUntil([&] { return engine.calls().size() >= count; }));
}

void AppStateFixture::startRun(const QString& text, std::size_t number)
{
    state->sourceText = text;
    state->summarize();
    waitForCalls(number + 1);
}

void AppStateFixture::startRunUnheard(const QString& text)
{
    state->sourceText = text;
    state->summarize();
    while (engine.calls().empty())
        std::this_thread::yield();
}

void AppStateFixture::waitForOutput(const QString& text)
{
    EXPECT_TRUE(waitUntil([&] { return state->output.get() == text; }))
        << state->output->toStdString();
}

void AppStateFixture::waitForError(const QString& text)
{
    EXPECT_TRUE(waitUntil([&] { return state->errorMessage.get() == text; })) << snapshot();
}

void AppStateFixture::waitForSource(const QString& text, const QString& label)
{
    EXPECT_TRUE(waitUntil([&] { return state->sourceText.get() == text; })) << snapshot();
    EXPECT_EQ(state->sourceLabel.get(), label);
}

void AppStateFixture::advance(std::chrono::milliseconds time)
{
    clock += time;
    while (!timers.empty() && timers.front().first <= clock) {
        const auto function = timers.front().second;
        timers.pop_front();
        function();
    }
}

void AppStateFixture::expectIdle(const std::optional<QString>& error)
{
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->status.get(), "");
    EXPECT_EQ(state->errorMessage.get(), error);
}

void AppStateFixture::expectWorking(const QString& status)
{
    EXPECT_TRUE(state->isWorking);
    EXPECT_EQ(state->status.get(), status);
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
}

std::string AppStateFixture::snapshot() const
{
    const QString text =
        QStringLiteral("%1 | %2 (%3) | %4 | %5 %6 | %7")
            .arg(QtText::fromUtf8(AppState::rawValue(state->tab)), state->sourceText.get(),
                 state->sourceLabel.get(), state->output.get(),
                 state->isWorking ? QStringLiteral("working") : QStringLiteral("idle"),
                 state->status.get(), state->errorMessage.get().value_or("no error"));
    return text.toStdString();
}

QCoro::Task<std::string> AppStateFixture::fetch(std::string address)
{
    addresses.push_back(std::move(address));
    pages.emplace_back().start();
    const QFuture<std::string> page = pages.back().future();
    co_return co_await page;
}

QCoro::Task<AppStateFixture::Grabbed> AppStateFixture::grab()
{
    selections.emplace_back().start();
    const QFuture<Grabbed> selection = selections.back().future();
    co_return co_await selection;
}
