#include "AppState.h"

#include "AppStateFixture.h"

#include <cmath>
#include <limits>
#include <thread>

namespace {

using testing::ElementsAre;

class AppStateTest : public AppStateFixture
{
protected:
    SummaryLength lengthAt(double position)
    {
        state->length = position;
        return state->lengthValue();
    }

    qsizetype wordsOf(const QString& text)
    {
        state->sourceText = text;
        return state->wordCount();
    }

    QString stored(std::string_view text)
    {
        state->setSource(text, "Label");
        return state->sourceText;
    }
};

TEST_F(AppStateTest, AFreshStateHoldsTheDefaults)
{
    EXPECT_EQ(state->tab, Tab::clipboard);
    EXPECT_EQ(state->sourceText.get(), "");
    EXPECT_EQ(state->sourceLabel.get(), "");
    EXPECT_EQ(rawValue(state->mode), "3 Bullets");
    EXPECT_EQ(state->length, 1.0);
    EXPECT_EQ(state->lengthValue(), SummaryLength::balanced);
    EXPECT_EQ(state->output.get(), "");
    EXPECT_FALSE(state->isWorking);
    EXPECT_EQ(state->status.get(), "");
    EXPECT_EQ(state->errorMessage.get(), std::nullopt);
    EXPECT_EQ(state->urlString.get(), "");
    EXPECT_EQ(state->toast.get(), std::nullopt);
    EXPECT_EQ(state->token(), nullptr);
    EXPECT_EQ(state->wordCount(), 0);
}

TEST_F(AppStateTest, TabsAreKnownByTheirLabels)
{
    std::vector<std::string_view> labels;
    for (const Tab tab : AppState::allTabs) {
        labels.push_back(AppState::rawValue(tab));
        EXPECT_EQ(AppState::tabFromRawValue(labels.back()), tab);
    }
    EXPECT_THAT(labels, ElementsAre("Clipboard", "Document", "Web", "Capture"));
    for (const char* other : {"", "clipboard", "Clipboard ", "Selection"})
        EXPECT_EQ(AppState::tabFromRawValue(other), std::nullopt) << other;
}

TEST_F(AppStateTest, EveryAssignmentIsAnnouncedWhileTheOldValueStands)
{
    std::vector<QString> values;
    QObject::connect(state.get(), &AppState::willChange,
                     [&] { values.push_back(state->urlString); });
    state->urlString = "one";
    state->urlString = "one";
    state->urlString = "two";
    EXPECT_THAT(values, ElementsAre("", "one", "one"));
    EXPECT_EQ(state->urlString.get(), "two");
}

TEST_F(AppStateTest, EveryFieldAnnouncesItself)
{
    int announcements = 0;
    QObject::connect(state.get(), &AppState::willChange, [&] { ++announcements; });
    state->tab = Tab::web;
    state->sourceText = "text";
    state->sourceLabel = "label";
    state->mode = SummaryMode::tldr;
    state->length = 2;
    state->output = "output";
    state->isWorking = true;
    state->status = "status";
    state->errorMessage = "error";
    state->urlString = "address";
    state->toast = "toast";
    EXPECT_EQ(announcements, 11);
}

TEST_F(AppStateTest, TheLengthIsRoundedAndBalancedWhereThereIsNone)
{
    EXPECT_EQ(lengthAt(0), SummaryLength::brief);
    EXPECT_EQ(lengthAt(0.49), SummaryLength::brief);
    EXPECT_EQ(lengthAt(0.5), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(1.49), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(1.5), SummaryLength::detailed);
    EXPECT_EQ(lengthAt(2.49), SummaryLength::detailed);
    EXPECT_EQ(lengthAt(2.5), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(3), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(-0.3), SummaryLength::brief);
    EXPECT_EQ(lengthAt(-0.5), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(-0.6), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(9223372036854774784.0), SummaryLength::balanced);
    EXPECT_EQ(lengthAt(-9223372036854775808.0), SummaryLength::balanced);
}

TEST_F(AppStateTest, ALengthThatIsNoNumberOf64BitsEndsTheProcess)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double length : {std::nan(""), infinity, -infinity, 9223372036854775808.0,
                                -9223372036854777856.0, 1e300}) {
        state->length = length;
        EXPECT_DEATH(static_cast<void>(state->lengthValue()), "") << length;
    }
}

TEST_F(AppStateTest, WordsAreWhatStandsBetweenWhiteSpace)
{
    EXPECT_EQ(wordsOf("one two\nthree\tfour"), 4);
    EXPECT_EQ(wordsOf("one  two\r\n\nthree \t four "), 4);
    EXPECT_EQ(wordsOf(""), 0);
    EXPECT_EQ(wordsOf(QStringLiteral(" \n\t\u00A0\u2029")), 0);
    EXPECT_EQ(wordsOf("well-known, he said"), 3);
    EXPECT_EQ(wordsOf(QStringLiteral("one\u00A0two\u2028three\u3000four\u0085five")), 5);
    EXPECT_EQ(wordsOf(QStringLiteral("\U0001F469\U0001F469 \u200B x")), 3);
}

TEST_F(AppStateTest, ASourceIsNormalisedAndStoredWithItsLabel)
{
    EXPECT_EQ(stored("a\r\n\r\n\r\n\r\nb"), "a\n\nb");
    EXPECT_EQ(state->sourceLabel.get(), "Label");
    EXPECT_EQ(stored("  x\u00A0\u00A0 y "), "x y");
    EXPECT_EQ(stored("\r a\rb\tc\t\r\n"), "a\rb\tc");
    EXPECT_EQ(stored("a\r\r\nb"), "a\r\nb");
    EXPECT_EQ(stored("\uFEFFmark"), QString(QChar(0xFEFF)) + "mark");
    EXPECT_EQ(stored("naïve 👩‍👧"), "naïve 👩‍👧");
}

TEST_F(AppStateTest, ASourceStartsASummaryAndTouchesNothingElse)
{
    state->tab = Tab::web;
    state->setSource(" text ", "Label");
    EXPECT_EQ(snapshot(), "Web | text (Label) |  | working Loading model… | no error");
    EXPECT_NE(state->token(), nullptr);
}

TEST_F(AppStateTest, ABlankSourceIsReportedAndLeavesTheTextAsItWas)
{
    state->sourceText = "before";
    state->sourceLabel = "Earlier";
    state->output = "summary";
    state->isWorking = true;
    state->status = "Reading…";
    state->setSource(" \n\t", "Clipboard");
    expectIdle("No text found in Clipboard.");
    EXPECT_EQ(state->sourceText.get(), "before");
    EXPECT_EQ(state->sourceLabel.get(), "Earlier");
    EXPECT_EQ(state->output.get(), "summary");
    EXPECT_EQ(state->token(), nullptr);
}

TEST_F(AppStateTest, ANoticeStaysForItsTimeAlsoAfterAnother)
{
    using namespace std::chrono_literals;
    state->copyMarkdown();
    EXPECT_EQ(state->toast.get(), "Markdown copied");
    advance(1000ms);
    state->replaceClipboard();
    advance(1799ms);
    EXPECT_EQ(state->toast.get(), "Clipboard replaced");
    advance(1ms);
    EXPECT_EQ(state->toast.get(), std::nullopt);
}

TEST_F(AppStateTest, TwoEqualNoticesAreClearedByTheFirstTimer)
{
    using namespace std::chrono_literals;
    state->copyMarkdown();
    advance(1000ms);
    state->copyMarkdown();
    advance(800ms);
    EXPECT_EQ(state->toast.get(), std::nullopt);
    advance(1000ms);
    EXPECT_EQ(state->toast.get(), std::nullopt);
}

TEST_F(AppStateTest, ATimerThatOutlivesTheStateDoesNothing)
{
    state->copyMarkdown();
    state.reset();
    advance(std::chrono::seconds(2));
    EXPECT_TRUE(timers.empty());
}

TEST_F(AppStateTest, ThreadsThatAskAtOnceGetTheSameStateOfTheMainThread)
{
    std::atomic<AppState*> found[8] = {};
    std::vector<std::thread> threads;
    for (auto& place : found)
        threads.emplace_back([&place] { place = &AppState::shared(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& place : found)
        EXPECT_EQ(place, &AppState::shared());
    EXPECT_EQ(AppState::shared().thread(), QCoreApplication::instance()->thread());
}

TEST_F(AppStateTest, AMegabyteIsCountedOnceAndCopiedNever)
{
    int counts = 0;
    WordCount words([&counts](QStringView text) {
        ++counts;
        return WordCount::words(text);
    });
    const QString text = QString("word ").repeated(200'000);
    state->sourceText = text;
    EXPECT_TRUE(state->sourceText->isSharedWith(text));
    for (int redraw = 0; redraw < 100; ++redraw)
        EXPECT_EQ(words.of(state->sourceText), 200'000);
    EXPECT_EQ(counts, 1);
    state->sourceText = text + "more";
    EXPECT_EQ(words.of(state->sourceText), 200'001);
    EXPECT_EQ(words.of("two words"), 2);
    EXPECT_EQ(counts, 3);
}

} // namespace
