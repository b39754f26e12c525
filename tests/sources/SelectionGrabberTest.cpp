#include "SelectionGrabber.h"

#include "RecordingAccessibility.h"
#include "RecordingKeyEvents.h"
#include "RecordingPasteboard.h"
#include "WaitUntil.h"

#include <QCoroTask>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using Items = std::vector<Pasteboard::Item>;
using testing::ElementsAre;

class SelectionGrabberTest : public testing::Test
{
protected:
    SelectionGrabber::Ports ports() const { return {m_accessibility, m_keyEvents, m_pasteboard}; }

    std::optional<std::string> grab() const
    {
        return QCoro::waitFor(SelectionGrabber::grab(ports()));
    }

    /// The shortcut makes the application copy `items` so that the look number `look` finds it.
    void copyUponShortcut(Items items, int look = 1)
    {
        m_pasteboard->copied = std::move(items);
        m_keyEvents->application = [this, look] { m_pasteboard->looksUntilCopy = look - 1; };
    }

    std::vector<std::string> calls(const std::vector<std::string>& before, std::size_t looks,
                                   const std::vector<std::string>& after) const
    {
        std::vector<std::string> all = before;
        all.insert(all.end(), looks, "changeCount");
        all.insert(all.end(), after.begin(), after.end());
        return all;
    }

    static Items text(const std::string& text) { return {{{"text/plain", text, ""}}}; }

    std::vector<std::string> m_calls;
    std::shared_ptr<RecordingAccessibility> m_accessibility =
        std::make_shared<RecordingAccessibility>(m_calls);
    std::shared_ptr<RecordingKeyEvents> m_keyEvents = std::make_shared<RecordingKeyEvents>(m_calls);
    std::shared_ptr<RecordingPasteboard> m_pasteboard =
        std::make_shared<RecordingPasteboard>(m_calls);

    const std::vector<std::string> m_copying = {"isTrusted", "selectedText", "changeCount",
                                                "snapshot", "sendCopy"};
    const Items m_saved = {
        {{"text/plain", "earlier", ""}, {"image/png", std::string(3, '\0'), "8"}},
        {},
        {{"text/html", "<b>", ""}}};
};

TEST_F(SelectionGrabberTest, WithoutTrustNothingIsReadAndNoKeyIsSent)
{
    m_accessibility->trusted = false;
    m_accessibility->selection = "text";
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_THAT(m_calls, ElementsAre("isTrusted"));
}

TEST_F(SelectionGrabberTest, AWordSurroundedByBlanksComesBareAndTheClipboardIsNotTouched)
{
    m_accessibility->selection = " \t word \u00A0\n";
    EXPECT_EQ(grab(), "word");
    EXPECT_THAT(m_calls, ElementsAre("isTrusted", "selectedText"));
}

TEST_F(SelectionGrabberTest, AnApplicationThatTellsNothingIsMadeToCopy)
{
    m_pasteboard->contents = m_saved;
    copyUponShortcut(text(" copied\n"), 3);
    EXPECT_EQ(grab(), "copied");
    EXPECT_EQ(m_calls, calls(m_copying, 3,
                             {"plainText", "clear", "write text/plain image/png", "write",
                              "write text/html"}));
    EXPECT_EQ(m_pasteboard->contents, m_saved);
}

TEST_F(SelectionGrabberTest, ABlankSelectionIsNoneAndTheApplicationIsMadeToCopy)
{
    for (const char* blank : {"", " ", "\r\n\t\u2003"}) {
        m_accessibility->selection = blank;
        copyUponShortcut(text("copied"));
        EXPECT_EQ(grab(), "copied");
    }
}

TEST_F(SelectionGrabberTest, TheClipboardIsLookedAtTwelveTimesIn300Milliseconds)
{
    m_pasteboard->contents = m_saved;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_GE(timer.elapsed(), 300); // a busy machine can only make it longer
    EXPECT_EQ(m_calls, calls(m_copying, 12, {}));
    EXPECT_EQ(m_pasteboard->contents, m_saved);
}

TEST_F(SelectionGrabberTest, WhereEverybodyTakesAsLongAsTheyMayItIsLessThan900Milliseconds)
{
    using namespace std::chrono_literals;
    auto whole = 300ms; // of the looks
    const auto takeAll = [&whole](std::chrono::milliseconds limit) {
        whole += limit;
        std::this_thread::sleep_for(limit); // a moment more only makes the later limits shorter
    };
    m_accessibility->wait = takeAll;
    m_pasteboard->wait = takeAll;
    copyUponShortcut(text("copied"), 12);
    EXPECT_EQ(grab(), "copied");
    EXPECT_LT(whole, 900ms);
}

TEST_F(SelectionGrabberTest, ACopyAtTheLastLookCounts)
{
    copyUponShortcut(text("copied"), 12);
    EXPECT_EQ(grab(), "copied");
}

TEST_F(SelectionGrabberTest, ALateCopyStays)
{
    copyUponShortcut(text("late"), 13);
    EXPECT_EQ(grab(), std::nullopt);
    m_pasteboard->changeCount();
    EXPECT_EQ(m_pasteboard->contents, text("late"));
}

TEST_F(SelectionGrabberTest, AClipboardThatWasEmptyIsEmptyAgain)
{
    copyUponShortcut(text("copied"));
    EXPECT_EQ(grab(), "copied");
    EXPECT_EQ(m_calls, calls(m_copying, 1, {"plainText", "clear"}));
    EXPECT_TRUE(m_pasteboard->contents.empty());
}

TEST_F(SelectionGrabberTest, ACopyOfOnlyWhiteSpaceIsNothingAndTheContentsArePutBack)
{
    m_pasteboard->contents = m_saved;
    copyUponShortcut(text(" \n\t\u00A0"));
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(m_pasteboard->contents, m_saved);
}

TEST_F(SelectionGrabberTest, ACopyWithoutTextIsNothingAndTheContentsArePutBack)
{
    m_pasteboard->contents = m_saved;
    copyUponShortcut({{{"image/png", "picture", ""}}});
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(m_pasteboard->contents, m_saved);
}

TEST_F(SelectionGrabberTest, WhereNoKeyCouldBeSentNobodyElsesCopyIsTaken)
{
    m_pasteboard->contents = m_saved;
    m_keyEvents->outcome = KeyEvents::Outcome::notSent;
    m_pasteboard->looksUntilCopy = 1;
    m_pasteboard->copied = text("another application's");
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(m_calls, m_copying);
    EXPECT_EQ(m_pasteboard->contents, m_saved);
}

TEST_F(SelectionGrabberTest, TextThatIsNotUtf8IsReadAsLatin1)
{
    m_accessibility->selection = "caf\xE9";
    EXPECT_EQ(grab(), "café");
    m_accessibility->selection.reset();
    copyUponShortcut(text("na\xEFve"));
    EXPECT_EQ(grab(), "naïve");
}

TEST_F(SelectionGrabberTest, EachWayIsThereByItself)
{
    m_accessibility->selection = "selected";
    copyUponShortcut(text("copied"));
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::axSelectedText(ports())), "selected");
    EXPECT_THAT(m_calls, ElementsAre("selectedText"));
    m_calls.clear();
    EXPECT_EQ(QCoro::waitFor(SelectionGrabber::copySelection(ports())), "copied");
    EXPECT_EQ(m_calls, calls({"changeCount", "snapshot", "sendCopy"}, 1, {"plainText", "clear"}));
}

TEST_F(SelectionGrabberTest, TheMainThreadGoesOnWhileAnApplicationCopies)
{
    QSemaphore turns;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { turns.release(); });
    timer.start(0);
    const QThread* portThread = nullptr;
    m_keyEvents->application = [&] {
        portThread = QThread::currentThread();
        turns.acquire(100); // it ends only when the main thread has had as many
    };
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_NE(portThread, nullptr);
    EXPECT_NE(portThread, QThread::currentThread());
}

TEST_F(SelectionGrabberTest, OneGrabAtATime)
{
    QSemaphore begun;
    std::atomic<bool> isFirst = true;
    bool hasCompany = false;
    m_accessibility->selection = "word";
    m_accessibility->wait = [&](std::chrono::milliseconds) {
        begun.release();
        // For another one that must not come.
        if (isFirst.exchange(false))
            hasCompany = begun.tryAcquire(2, 300);
    };
    const auto first = SelectionGrabber::grab(ports());
    EXPECT_EQ(grab(), "word");
    EXPECT_EQ(begun.available(), 2);
    EXPECT_FALSE(hasCompany);
}

TEST_F(SelectionGrabberTest, AGrabThatNobodyWaitsForKeepsItsPorts)
{
    const std::weak_ptr<RecordingPasteboard> pasteboard = m_pasteboard;
    QSemaphore isForgotten;
    m_keyEvents->application = [&] { isForgotten.acquire(); };
    {
        const auto task = SelectionGrabber::grab(ports());
        m_accessibility.reset();
        m_pasteboard.reset();
        m_keyEvents.reset();
    }
    EXPECT_FALSE(pasteboard.expired());
    isForgotten.release();
    EXPECT_TRUE(waitUntil([&] { return pasteboard.expired(); }));
    EXPECT_EQ(m_calls, calls(m_copying, 12, {}));
}

} // namespace
