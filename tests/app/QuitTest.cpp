#include "AppStateFixture.h"
#include "ChildProcess.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// Each test runs again in a process of its own, which ends while its state is busy.
class QuitTest : public AppStateFixture
{
protected:
    static constexpr const char* m_variable = "PITHWISE_TEST_QUITS";

    /// Above the second that it may take: sanitizers have work to do at the end of a process.
    static constexpr Clock::duration m_limit = 3s;

    static bool isChild() { return qEnvironmentVariableIsSet(m_variable); }

    /// In the child, the last thing before the end.
    static void quit()
    {
        std::printf("\nquits at %lld\n",
                    static_cast<long long>(Clock::now().time_since_epoch().count()));
        std::fflush(stdout);
    }

    static void expectQuickEnd()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        qputenv(m_variable, "1");
        const ChildProcess::Result result = ChildProcess::run(
            {QCoreApplication::applicationFilePath().toStdString(),
             std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name()},
            60s);
        const Clock::duration end = Clock::now().time_since_epoch();
        qunsetenv(m_variable);
        EXPECT_EQ(result.end, ChildProcess::End::exited);
        EXPECT_EQ(result.exitStatus, 0) << result.output;
        const std::string mark = "\nquits at ";
        const std::size_t found = result.output.find(mark);
        ASSERT_NE(found, std::string::npos) << result.output;
        const Clock::duration begin(std::stoll(result.output.substr(found + mark.size())));
        RecordProperty("milliseconds", static_cast<int>((end - begin) / 1ms));
        EXPECT_LT((end - begin) / 1ms, m_limit / 1ms);
    }

    void useGenerate(const Pithwise::Generate& generate)
    {
        AppServices hanging = services();
        hanging.generate = generate;
        state = std::make_unique<AppState>(hanging);
    }
};

TEST_F(QuitTest, ARunThatTakesNoNoticeDoesNotHoldUpTheEnd)
{
    if (!isChild())
        return expectQuickEnd();
    static std::atomic<bool> isRunning = false;
    useGenerate([](auto&&...) -> std::string {
        isRunning = true;
        for (;;)
            std::this_thread::sleep_for(1h);
    });
    state->setSource("text", "label");
    ASSERT_TRUE(waitUntil([] { return isRunning.load(); }));
    quit();
}

TEST_F(QuitTest, ARunThatGoesOnWritingDoesNotHoldUpTheEnd)
{
    if (!isChild())
        return expectQuickEnd();
    useGenerate([](auto&&, auto&&, auto&&, auto&&, auto&&,
                   const Pithwise::TextCallback& onUpdate) -> std::string {
        for (;;)
            onUpdate("text");
    });
    state->setSource("text", "label");
    ASSERT_TRUE(waitUntil([&] { return !state->output->isEmpty(); }));
    quit();
}

TEST_F(QuitTest, ADocumentThatHangsDoesNotHoldUpTheEnd)
{
    if (!isChild())
        return expectQuickEnd();
    static std::atomic<bool> isRunning = false;
    AppServices hanging = services();
    hanging.readDocument = [](auto&&) -> std::string {
        isRunning = true;
        for (;;)
            std::this_thread::sleep_for(1h);
    };
    state = std::make_unique<AppState>(hanging);
    state->loadFile("/hostile.pdf");
    ASSERT_TRUE(waitUntil([] { return isRunning.load(); }));
    quit();
}

TEST_F(QuitTest, ARunThatTakesNoticeEndsBeforeTheState)
{
    std::atomic<bool> isRunning = false;
    std::atomic<bool> hasEnded = false;
    useGenerate(
        [&](auto&&, auto&&, auto&&, auto&&, const CancelToken& token, auto&&) -> std::string {
            isRunning = true;
            while (!token.isCancelled())
                std::this_thread::yield();
            hasEnded = true;
            return "";
        });
    state->setSource("text", "label");
    ASSERT_TRUE(waitUntil([&] { return isRunning.load(); }));
    state.reset();
    EXPECT_TRUE(hasEnded);
}

} // namespace
