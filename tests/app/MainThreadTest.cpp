#include "AppStateFixture.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <atomic>
#include <future>
#include <memory>
#include <vector>

namespace {

/// What the main thread leaves to the others. Whoever copies a long text writes to memory that was
/// not in use, of which the system takes note for each thread: a fault for each page.
class MainThreadTest : public AppStateFixture
{
protected:
    static constexpr int m_characters = 8'000'000;
    static constexpr long m_pages = m_characters / 4096;

    void SetUp() override
    {
        ::prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0); // pages of one size
        ::mallopt(M_MMAP_THRESHOLD, 1 << 20);    // memory that is fresh each time
        const long before = faults();
        const std::vector<char> copy(m_characters, 'x');
        ASSERT_GE(faults() - before, m_pages) << "The system does not count: " << copy.back();
        makePlainState();
    }

    void TearDown() override
    {
        m_mayEnd.set_value();
        AppStateFixture::TearDown();
    }

    /// A state that nobody watches, and an engine that keeps no text and waits for the test's end.
    void makePlainState()
    {
        AppServices plain = services();
        // Nothing of this object: a run of several sections ends after it.
        plain.generate = [isRunning = m_isRunning,
                          mayEnd = m_mayEnd.get_future().share()](auto&&...) {
            *isRunning = true;
            mayEnd.wait();
            return std::string();
        };
        state = std::make_unique<AppState>(plain);
    }

    void waitForRun()
    {
        EXPECT_TRUE(waitUntil([this] { return m_isRunning->load(); }));
    }

    static long faults()
    {
        rusage usage = {};
        ::getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_minflt;
    }

    const std::shared_ptr<std::atomic<bool>> m_isRunning =
        std::make_shared<std::atomic<bool>>(false);
    std::promise<void> m_mayEnd;
};

TEST_F(MainThreadTest, ALongTextThatIsSummarizedIsNotCopiedThere)
{
    state->sourceText = " " + QString(m_characters, 'x') + "\n";
    const long before = faults();
    state->summarize();
    waitForRun();
    EXPECT_LT(faults() - before, m_pages / 2);
    // The run has the text as it stands in the state, not one of its own.
    EXPECT_FALSE(state->sourceText->isDetached());
}

TEST_F(MainThreadTest, ALongDocumentIsNeitherConvertedNorNormalisedThere)
{
    documents.answer(0, " " + std::string(m_characters, 'x') + "\r\n");
    const long before = faults();
    state->loadFile("/long.txt");
    waitForRun();
    EXPECT_LT(faults() - before, m_pages / 2);
    EXPECT_EQ(state->sourceText->size(), m_characters);
}

TEST_F(MainThreadTest, ALongTextOnTheClipboardIsNeitherConvertedNorNormalisedThere)
{
    clipboard = std::string(m_characters, ' ') + "word\n";
    const long before = faults();
    state->useClipboard();
    waitForRun();
    EXPECT_LT(faults() - before, m_pages / 2);
    EXPECT_EQ(state->sourceText.get(), "word");
}

TEST_F(MainThreadTest, TheWordsOfALongTextAreCountedWithoutACopy)
{
    state->sourceText = QString(m_characters, 'x');
    const long before = faults();
    EXPECT_EQ(state->wordCount(), 1);
    EXPECT_LT(faults() - before, m_pages / 2);
    // Whoever has counted a text keeps it, and knows it again by that.
    EXPECT_FALSE(state->sourceText->isDetached());
}

} // namespace
