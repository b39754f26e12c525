#include "PageRecognition.h"

#include "AppError.h"
#include "DocumentFolder.h"
#include "RecognizedPages.h"
#include "TextRecognizer.h"

#include <QImage>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

/// A page's picture tells its index by its width.
QImage pictureOf(int index)
{
    QImage image(index + 1, 1, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    return image;
}

/// Says of each picture what the test wants.
class ScriptedRecognizer : public TextRecognizer
{
public:
    explicit ScriptedRecognizer(std::function<std::string(int)> read) : m_read(std::move(read)) {}
    Reading read(const GreyImage& image) override { return {.lines = {m_read(image.width - 1)}}; }
    Reading readPlainly(const ColourImage&) override { return {}; }

private:
    std::function<std::string(int)> m_read;
};

/// Lets threads wait until so many have come.
class Meeting
{
public:
    explicit Meeting(int size) : m_missing(size) {}

    void come()
    {
        const std::lock_guard lock(m_mutex);
        --m_missing;
        m_changed.notify_all();
    }

    /// False where they do not come within a minute.
    bool wait()
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::minutes(1), [this] { return m_missing <= 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_missing;
};

using Read = std::function<std::string(int)>;

PageRecognition::Pages pagesOf(int count, RecognizedPages& result, const Read& read)
{
    return {.count = count,
            .draw = pictureOf,
            .onText =
                [&result](int index, std::optional<std::string> text) {
                    result.add(index, std::move(text));
                },
            .create = [read] { return std::make_unique<ScriptedRecognizer>(read); }};
}

std::string textOf(int count, const Read& read)
{
    RecognizedPages result(count);
    PageRecognition::run(pagesOf(count, result, read));
    return result.text();
}

/// Says whether another thread is inside at the same time.
class Alone
{
public:
    void enter()
    {
        m_isBroken = m_isBroken || m_inside.fetch_add(1) > 0;
        std::this_thread::yield();
        m_inside.fetch_sub(1);
    }
    bool isBroken() const { return m_isBroken; }

private:
    std::atomic<int> m_inside = 0;
    std::atomic<bool> m_isBroken = false;
};

TEST(PageRecognitionTest, TwoToFourPagesAreRecognizedAtATime)
{
    EXPECT_EQ(PageRecognition::threadCount(0), 2); // unknown
    EXPECT_EQ(PageRecognition::threadCount(1), 2);
    EXPECT_EQ(PageRecognition::threadCount(4), 2);
    EXPECT_EQ(PageRecognition::threadCount(5), 3);
    EXPECT_EQ(PageRecognition::threadCount(6), 4);
    EXPECT_EQ(PageRecognition::threadCount(128), 4);
}

TEST(PageRecognitionTest, APageIsRecognizedWhileAnotherOneIs)
{
    Meeting meeting(2);
    const std::string text = textOf(2, [&](int) {
        meeting.come();
        return meeting.wait() ? "together" : "alone";
    });
    EXPECT_EQ(text, "together\n\ntogether");
}

TEST(PageRecognitionTest, TheTextIsInThePagesOrderWhicheverIsDoneFirst)
{
    Meeting others(5);
    const std::string text = textOf(6, [&](int index) {
        if (index == 0)
            EXPECT_TRUE(others.wait());
        else
            others.come();
        return std::to_string(index);
    });
    EXPECT_EQ(text, "0\n\n1\n\n2\n\n3\n\n4\n\n5");
}

TEST(PageRecognitionTest, PagesAreDrawnAndToldOneAtATimeWithOneRecognizerAThread)
{
    constexpr int count = 200;
    Alone drawing, telling;
    std::atomic<int> recognizers = 0;
    PageRecognition::run(
        {.count = count,
         .draw =
             [&](int index) {
                 drawing.enter();
                 return pictureOf(index);
             },
         .onText = [&](int, const std::optional<std::string>&) { telling.enter(); },
         .create =
             [&] {
                 ++recognizers;
                 return std::make_unique<ScriptedRecognizer>([](int) { return "text"; });
             }});
    EXPECT_FALSE(drawing.isBroken());
    EXPECT_FALSE(telling.isBroken());
    EXPECT_LE(recognizers, PageRecognition::threadCount(std::thread::hardware_concurrency()));
}

TEST(PageRecognitionTest, APageWithoutAPictureHasNoText)
{
    RecognizedPages result(3);
    PageRecognition::Pages pages = pagesOf(3, result, [](int) { return "text"; });
    pages.draw = [](int index) { return index == 1 ? QImage() : pictureOf(index); };
    PageRecognition::run(pages);
    EXPECT_EQ(result.text(), "text\n\ntext");
    EXPECT_EQ(result.share(), "");
}

TEST(PageRecognitionTest, WhereNothingIsDrawnNoRecognizerIsMade)
{
    RecognizedPages result(3);
    PageRecognition::Pages pages = pagesOf(3, result, {});
    pages.draw = [](int) { return QImage(); };
    pages.create = []() -> std::unique_ptr<TextRecognizer> { throw AppError("made"); };
    EXPECT_NO_THROW(PageRecognition::run(pages));
    pages.count = 0;
    EXPECT_NO_THROW(PageRecognition::run(pages));
}

TEST(PageRecognitionTest, OfSeveralErrorsTheOneOfTheFirstPageIsPassedOn)
{
    Meeting meeting(2);
    const auto read = [&](int index) -> std::string {
        meeting.come();
        meeting.wait();
        throw AppError("Page " + std::to_string(index));
    };
    EXPECT_EQ(DocumentFolder::errorOf([&] { return textOf(9, read); }), "Page 0");
}

TEST(PageRecognitionTest, AfterAnErrorNoFurtherPageIsBegun)
{
    std::atomic<int> begun = 0;
    const auto read = [&](int) -> std::string {
        ++begun;
        throw AppError("The recogniser is tired.");
    };
    EXPECT_EQ(DocumentFolder::errorOf([&] { return textOf(100, read); }),
              "The recogniser is tired.");
    EXPECT_LE(begun, PageRecognition::threadCount(std::thread::hardware_concurrency()));
}

TEST(PageRecognitionTest, AnErrorOfDrawingIsPassedOn)
{
    RecognizedPages result(3);
    PageRecognition::Pages pages = pagesOf(3, result, [](int) { return "text"; });
    pages.draw = [](int index) -> QImage {
        if (index == 1)
            throw AppError("The page is torn.");
        return pictureOf(index);
    };
    EXPECT_EQ(DocumentFolder::errorOf([&] {
                  PageRecognition::run(pages);
                  return 0;
              }),
              "The page is torn.");
}

} // namespace
