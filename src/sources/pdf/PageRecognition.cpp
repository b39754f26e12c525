#include "PageRecognition.h"

#include "Mutex.h"
#include "OCR.h"
#include "TextRecognizer.h"

#include <QImage>

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

namespace PageRecognition {

namespace {

/// The queue from which several threads take the pages, one after another.
class Queue
{
public:
    explicit Queue(const Pages& pages) : m_pages(pages) {}

    /// Recognises pages until there are no more or one has failed. Several threads call this at the
    /// same time.
    void work()
    {
        std::unique_ptr<TextRecognizer> recognizer;
        for (std::optional<Drawn> page = next(); page; page = next()) {
            try {
                if (!recognizer)
                    recognizer = m_pages.create();
                finish(page->index, OCR::recognize(page->image, *recognizer));
            } catch (...) {
                fail(page->index, std::current_exception());
            }
        }
    }

    /// Call it once no thread is in work() any more.
    void throwFirstError()
    {
        const MutexLock lock(m_mutex);
        if (m_error)
            std::rethrow_exception(m_error);
    }

private:
    struct Drawn
    {
        int index;
        QImage image;
    };

    /// The next page with its picture, nothing if there is no page left to recognise.
    std::optional<Drawn> next()
    {
        const MutexLock lock(m_drawing);
        while (const std::optional<int> index = take()) {
            try {
                QImage image = m_pages.draw(*index);
                if (!image.isNull())
                    return Drawn{*index, std::move(image)};
                finish(*index, std::nullopt);
            } catch (...) {
                fail(*index, std::current_exception());
            }
        }
        return std::nullopt;
    }

    std::optional<int> take()
    {
        const MutexLock lock(m_mutex);
        return m_error || m_next == m_pages.count ? std::nullopt : std::optional(m_next++);
    }

    void finish(int index, std::optional<std::string> text)
    {
        const MutexLock lock(m_mutex);
        m_pages.onText(index, std::move(text));
    }

    /// Keeps the error of the page with the lowest index. The pages before it were taken before it
    /// and go on, so one of them may still fail.
    void fail(int index, std::exception_ptr error)
    {
        const MutexLock lock(m_mutex);
        if (m_error && m_failed < index)
            return;
        m_error = std::move(error);
        m_failed = index;
    }

    const Pages& m_pages;
    Mutex m_drawing; // held while a page is drawn
    Mutex m_mutex;
    int m_next PITHWISE_GUARDED_BY(m_mutex) = 0;
    std::exception_ptr m_error PITHWISE_GUARDED_BY(m_mutex);
    int m_failed PITHWISE_GUARDED_BY(m_mutex) = 0;
};

} // namespace

int threadCount(unsigned processors)
{
    constexpr int least = 2;
    constexpr int most = 4;
    return std::clamp(static_cast<int>(processors) - 2, least, most);
}

void run(const Pages& pages)
{
    Queue queue(pages);
    {
        const int threads = std::min(threadCount(std::thread::hardware_concurrency()), pages.count);
        std::vector<std::jthread> others;
        for (int i = 1; i < threads; ++i)
            others.emplace_back([&queue] { queue.work(); });
        queue.work();
    }
    queue.throwFirstError();
}

} // namespace PageRecognition
