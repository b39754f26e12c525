// Measures what the main thread bears: from the hotkey to the first sign of work, while a run
// streams, and taking in a source.

#include "AppState.h"
#include "Figure.h"
#include "ResultRow.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 9;
constexpr int tokens = 500;
constexpr double mostMilliseconds = 16.6; // a frame

/// Milliseconds since `begin`.
double since(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

std::string prose(std::size_t bytes)
{
    constexpr std::string_view sentence = "The meeting decided on the budget and its schedule.\n";
    std::string text;
    while (text.size() < bytes)
        text += sentence;
    text.resize(bytes);
    return text;
}

/// The selection is there at once: what a grab takes is the other program's time.
AppServices services(const Pithwise::Generate& generate)
{
    AppServices services;
    services.grabSelection = []() -> QCoro::Task<std::optional<std::string>> {
        co_return std::string("Some selected text.");
    };
    services.isModelReady = [] { return true; };
    services.generate = generate;
    return services;
}

/// How long the main thread is busy at a stretch, between two waits of its event loop.
class Occupation
{
public:
    Occupation()
    {
        auto* const dispatcher = QAbstractEventDispatcher::instance();
        m_awake = QObject::connect(dispatcher, &QAbstractEventDispatcher::awake,
                                   [this] { m_begin = m_begin.value_or(Clock::now()); });
        m_blocking = QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock,
                                      [this] { end(); });
    }
    ~Occupation()
    {
        QObject::disconnect(m_awake);
        QObject::disconnect(m_blocking);
    }
    Occupation(const Occupation&) = delete;
    Occupation& operator=(const Occupation&) = delete;

    double longest() const { return m_longest; } // milliseconds
    double total() const { return m_total; }

private:
    void end()
    {
        if (!m_begin)
            return;
        const double time = since(*m_begin);
        m_begin.reset();
        m_longest = std::max(m_longest, time);
        m_total += time;
    }

    QMetaObject::Connection m_awake;
    QMetaObject::Connection m_blocking;
    std::optional<Clock::time_point> m_begin;
    double m_longest = 0;
    double m_total = 0;
};

void waitWhileWorking(const AppState& state)
{
    while (state.isWorking)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void measureHotkey()
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        AppState state(services([](auto&&...) { return std::string("summary"); }));
        const Clock::time_point begin = Clock::now();
        const QCoro::Task<> task = state.handleHotkey();
        while (!state.isWorking)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        times.push_back(since(begin));
        waitWhileWorking(state);
    }
    ResultRow::print("hotkey to working, selection there at once",
                     Figure::fixed(Figure::median(times), 3) + " ms");
}

/// A text of `bytes` is summarised in `tokens` tokens of five bytes, `interval` apart.
void measureStreaming(std::string_view what, std::size_t bytes, std::chrono::microseconds interval)
{
    AppState state(services(
        [interval](auto&&, auto&&, auto&&, auto&&, auto&&, const Pithwise::TextCallback& onUpdate) {
            std::string text;
            for (int token = 0; token < tokens; ++token) {
                std::this_thread::sleep_for(interval);
                onUpdate(text += "word ");
            }
            return text;
        }));
    state.setSource(prose(bytes), QStringLiteral("Document"));
    const Occupation occupation;
    waitWhileWorking(state);
    ResultRow::print(std::string(what) + ", longest stretch",
                     Figure::fixed(occupation.longest(), 3) + " ms", "< 16.6 ms",
                     occupation.longest() < mostMilliseconds);
    ResultRow::print(std::string(what) + ", in all", Figure::fixed(occupation.total(), 1) + " ms");
}

/// With the start of the run. Only the first megabyte has to fit into a frame.
void measureSource(std::size_t megabytes)
{
    const std::string text = prose(megabytes * 1'000'000);
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        AppState state(services([](auto&&...) { return std::string("summary"); }));
        const Clock::time_point begin = Clock::now();
        state.setSource(text, QStringLiteral("Document"));
        times.push_back(since(begin));
        waitWhileWorking(state);
    }
    const double median = Figure::median(times);
    const std::string what = "setSource, " + std::to_string(megabytes) + " MB";
    const std::string figure = Figure::fixed(median, 2) + " ms";
    if (megabytes == 1)
        ResultRow::print(what, figure, "< 16.6 ms", median < mostMilliseconds);
    else
        ResultRow::print(what, figure);
}

} // namespace

int main(int argc, char** argv)
{
    // GLib's loop would work within what the dispatcher announces as its wait.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    using namespace std::chrono_literals;
    measureHotkey();
    measureStreaming("500 tokens at 100 a second", 5'000, 10ms);
    measureStreaming("500 tokens as fast as can be", 5'000, 0us);
    measureStreaming("500 tokens on a text of 1 MB", 1'000'000, 2ms);
    for (const std::size_t megabytes : {1, 10, 100})
        measureSource(megabytes);
    return 0;
}
