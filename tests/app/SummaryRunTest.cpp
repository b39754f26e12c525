#include "SummaryRun.h"

#include "BackgroundThreads.h"
#include "CancelToken.h"
#include "LivingThreads.h"
#include "MainThreadQueue.h"
#include "WaitUntil.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <future>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

/// A run whose model writes once and then waits for the test.
class SummaryRunTest : public testing::Test
{
public:
    ~SummaryRunTest() override
    {
        m_mayEnd.set_value();
        waitForEnd();
    }

protected:
    /// Returns once the model has written, so that the main thread has not heard of anything yet.
    void start()
    {
        const auto generate = [this, threads = m_runs, mayEnd = m_mayEnd.get_future().share()](
                                  const std::filesystem::path&, std::string_view, std::string_view,
                                  int, const CancelToken&,
                                  const Pithwise::TextCallback& onUpdate) -> std::string {
            threads.countThisOne();
            onUpdate("- The");
            m_hasWritten.set_value();
            mayEnd.wait();
            return "- The end.";
        };
        const auto hear = [this](const char* kind) {
            return [this, kind](const QString& text) { hearOf(kind, text.toStdString()); };
        };
        SummaryRun::start(m_threads, m_queue,
                          {QStringLiteral("text"), SummaryMode::bullets, SummaryLength::brief},
                          m_token, generate,
                          {hear("status"), hear("output"), hear("finished"), hear("failed")});
        m_hasWritten.get_future().wait();
    }

    void hearOf(const std::string& kind, const std::string& text)
    {
        m_heard.push_back(kind + ": " + text);
        if (kind == m_cancelsAt)
            m_token->cancel();
    }

    void waitForEnd()
    {
        EXPECT_TRUE(waitUntil([this] { return m_runs.number() == 0; }));
        QCoreApplication::processEvents(); // what the run has told last
    }

    const LivingThreads m_runs{};
    std::promise<void> m_hasWritten;
    std::promise<void> m_mayEnd;
    std::string m_cancelsAt;
    std::vector<std::string> m_heard;
    const std::shared_ptr<CancelToken> m_token = std::make_shared<CancelToken>();
    const std::shared_ptr<MainThreadQueue> m_queue = MainThreadQueue::create();
    BackgroundThreads m_threads;
};

TEST_F(SummaryRunTest, WhatHasComeTogetherIsHeardInItsOrder)
{
    start();
    EXPECT_TRUE(waitUntil([this] { return m_heard.size() == 2; }));
    EXPECT_THAT(m_heard, ElementsAre("status: Summarizing…", "output: - The"));
}

TEST_F(SummaryRunTest, WhoCancelsAtAnUpdateHearsNoneOfThoseThatCameWithIt)
{
    m_cancelsAt = "status";
    start();
    EXPECT_TRUE(waitUntil([this] { return !m_heard.empty(); }));
    EXPECT_THAT(m_heard, ElementsAre("status: Summarizing…"));
}

TEST_F(SummaryRunTest, WhoCancelsBeforeTheFirstUpdateHearsNone)
{
    start();
    m_token->cancel();
    bool isLater = false;
    m_queue->post([&isLater] { isLater = true; });
    EXPECT_TRUE(waitUntil([&isLater] { return isLater; }));
    EXPECT_THAT(m_heard, ElementsAre());
}

TEST_F(SummaryRunTest, WhoCancelsAtTheLastUpdateHearsOfNoEnd)
{
    m_cancelsAt = "output";
    start();
    EXPECT_TRUE(waitUntil([this] { return m_heard.size() == 2; }));
    m_mayEnd.set_value();
    waitForEnd();
    m_mayEnd = {};
    EXPECT_THAT(m_heard, ElementsAre("status: Summarizing…", "output: - The"));
}

TEST_F(SummaryRunTest, TheEndIsHeardOfLast)
{
    start();
    m_mayEnd.set_value();
    waitForEnd();
    m_mayEnd = {};
    EXPECT_EQ(m_heard.back(), "finished: - The end.");
}

} // namespace
