#include "AppStateFixture.h"
#include "BackgroundThreads.h"
#include "Child.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

using namespace std::chrono_literals;

// A part of the second in which the program promises to end.
static_assert(BackgroundThreads::patience <= 500ms);

/// Each test runs again in a process of its own, which ends while its state is busy, most often
/// without an end of its own: that the process comes to one at all is what is tried.
class QuitTest : public AppStateFixture
{
protected:
    static constexpr const char* m_variable = "PITHWISE_TEST_QUITS";
    static constexpr const char* m_mark = "It is about to end.";

    static bool isChild() { return qEnvironmentVariableIsSet(m_variable); }

    /// In the child, the last thing before the end.
    static void quit()
    {
        std::puts(m_mark);
        std::fflush(stdout);
    }

    static void expectEnd()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        qputenv(m_variable, "1");
        const Child::Result result = Child::run(
            {QCoreApplication::applicationFilePath().toStdString(),
             std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name()},
            60s);
        qunsetenv(m_variable);
        EXPECT_EQ(result.end, Child::End::exited);
        EXPECT_EQ(result.exitStatus, 0) << result.output;
        EXPECT_NE(result.output.find(m_mark), std::string::npos) << result.output;
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
        return expectEnd();
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
        return expectEnd();
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
        return expectEnd();
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
