#include "SelectionGrabber.h"

#include "Accessibility.h"
#include "KeyEvents.h"
#include "Pasteboard.h"
#include "Utf8.h"
#include "WhiteSpace.h"

#include <QCoroFuture>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <chrono>
#include <thread>
#include <utility>

namespace SelectionGrabber {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using Text = std::optional<std::string>;

constexpr milliseconds wholeLimit(870);         // for a whole grab, some less than 900
constexpr milliseconds accessibilityLimit(200); // for asking for the selected text
constexpr milliseconds readingLimit(50);        // at least this for reading what was copied
constexpr milliseconds pollInterval(25);
constexpr int polls = 12;

/// The thread on which the ports are used, because they wait for other applications. There is only
/// one, for one call at a time. It is free even while the shared pool reads documents.
QThreadPool& worker()
{
    static QThreadPool pool;
    pool.setMaxThreadCount(1);
    return pool;
}

/// `text` as valid UTF-8, trimmed. Nothing if there is nothing in it to see.
Text usable(Text text)
{
    if (!text)
        return std::nullopt;
    const std::string decoded = Utf8::decoded(*std::move(text));
    const std::string_view trimmed = WhiteSpace::trimmed(decoded);
    return trimmed.empty() ? std::nullopt : Text(trimmed);
}

milliseconds until(Clock::time_point deadline)
{
    return std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
}

Text readSelectedText(Accessibility& accessibility)
{
    return usable(accessibility.selectedText(accessibilityLimit));
}

/// Waits for a copy. Returns whether the change count becomes another than `count` in time.
bool waitForCopy(Pasteboard& pasteboard, std::uint64_t count)
{
    Clock::time_point look = Clock::now();
    for (int i = 0; i < polls; ++i) {
        // By the clock, so that the last look is not delayed on a busy machine.
        look += pollInterval;
        std::this_thread::sleep_until(look);
        if (pasteboard.changeCount() != count)
            return true;
    }
    return false;
}

void restore(Pasteboard& pasteboard, std::vector<Pasteboard::Item> saved)
{
    pasteboard.clear();
    for (Pasteboard::Item& item : saved)
        pasteboard.write(std::move(item));
}

Text copy(const Ports& ports, Clock::time_point deadline)
{
    Pasteboard& pasteboard = *ports.pasteboard;
    const std::uint64_t count = pasteboard.changeCount();
    Pasteboard::Snapshot saved =
        pasteboard.snapshot(until(deadline) - polls * pollInterval - readingLimit);
    // Contents that have not been saved would be lost. If nothing was sent, a change would come
    // from somebody else.
    if (!saved.isComplete || ports.keyEvents->sendCopy() == KeyEvents::Outcome::notSent ||
        !waitForCopy(pasteboard, count))
        return std::nullopt;
    Text text = pasteboard.plainText(std::max(readingLimit, until(deadline)));
    restore(pasteboard, std::move(saved.items));
    return usable(std::move(text));
}

Text grabNow(const Ports& ports)
{
    const Clock::time_point deadline = Clock::now() + wholeLimit;
    if (!ports.accessibility->isTrusted())
        return std::nullopt;
    if (Text text = readSelectedText(*ports.accessibility))
        return text;
    return copy(ports, deadline);
}

/// Runs `work` on the worker. The ports exist until it is done, even if nobody waits for it.
QFuture<Text> start(Ports ports, Text (*work)(const Ports&))
{
    return QtConcurrent::run(&worker(), [ports = std::move(ports), work]() -> Text {
        try {
            return work(ports);
        } catch (const std::exception&) { // std::bad_alloc
            return std::nullopt;
        }
    });
}

} // namespace

Ports systemPorts()
{
    return {Accessibility::create(), KeyEvents::create(), Pasteboard::create()};
}

QCoro::Task<Text> grab(Ports ports)
{
    co_return co_await start(std::move(ports), grabNow);
}

QCoro::Task<Text> axSelectedText(Ports ports)
{
    co_return co_await start(
        std::move(ports), [](const Ports& used) { return readSelectedText(*used.accessibility); });
}

QCoro::Task<Text> copySelection(Ports ports)
{
    co_return co_await start(
        std::move(ports), [](const Ports& used) { return copy(used, Clock::now() + wholeLimit); });
}

} // namespace SelectionGrabber
