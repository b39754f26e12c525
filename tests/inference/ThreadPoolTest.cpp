#include "ThreadPool.h"

#include "EngineFixture.h"
#include "LlamaHandles.h"
#include "LoadedModel.h"
#include "WaitUntil.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <set>

namespace {

namespace fs = std::filesystem;

/// The threads of this process, as the system counts them.
class ThreadPoolTest : public EngineFixture
{
protected:
    static std::set<std::string> threads()
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator("/proc/self/task"))
            names.insert(entry.path().filename());
        return names;
    }

    /// How many threads a model is to have besides the calling one: all processors but two compute,
    /// and two at least.
    static std::size_t poolThreads()
    {
        const auto processors = static_cast<std::size_t>(::sysconf(_SC_NPROCESSORS_ONLN));
        return std::max(processors, std::size_t{4}) - 2 - 1;
    }

    /// Those that have come since `before`; waits until they are `count`.
    static std::vector<std::string> newThreads(std::size_t count,
                                               const std::set<std::string>& before)
    {
        std::vector<std::string> come;
        const auto look = [&] {
            const std::set<std::string> now = threads();
            come.clear();
            std::set_difference(now.begin(), now.end(), before.begin(), before.end(),
                                std::back_inserter(come));
            return come.size() == count;
        };
        // Those that only helped to load may be on their way out still.
        EXPECT_TRUE(waitUntil(look)) << come.size() << " new threads in place of " << count;
        return come;
    }

    /// What the system says of a thread under that name.
    static std::string statusOf(const std::string& thread, const std::string& name)
    {
        std::ifstream file("/proc/self/task/" + thread + "/status");
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with(name + ":"))
                return line.substr(name.size() + 1);
        }
        return {};
    }

    static bool isAsleep(const std::string& thread)
    {
        return statusOf(thread, "State").find("sleeping") != std::string::npos;
    }

    /// How often it has gone to sleep.
    static std::string sleeps(const std::string& thread)
    {
        return statusOf(thread, "voluntary_ctxt_switches");
    }
};

TEST_F(ThreadPoolTest, TheCallingThreadIsOneOfThePool)
{
    const auto loaded = LoadedModel::create(model({{{"a"}}})); // so that there is a back end
    const std::set<std::string> before = threads();
    const ThreadPool pool(4);
    newThreads(3, before);
}

TEST_F(ThreadPoolTest, AllOfThePoolComputeForTheContext)
{
    const auto loaded = LoadedModel::create(model({{{"a"}}}));
    const LlamaHandles::Model real{llama_model_load_from_file((m_folder / "model.gguf").c_str(),
                                                              llama_model_default_params())};
    ThreadPool pool(3);
    const LlamaHandles::Context context{
        llama_init_from_model(real.get(), llama_context_default_params())};
    pool.attachTo(*context);
    EXPECT_EQ(llama_n_threads(context.get()), 3);
    EXPECT_EQ(llama_n_threads_batch(context.get()), 3);
}

TEST_F(ThreadPoolTest, AModelComputesOnAllProcessorsButTwoAndOnTwoAtLeast)
{
    const fs::path path = model({{{"a"}}});
    const std::set<std::string> before = threads();
    const auto loaded = LoadedModel::create(path);
    newThreads(poolThreads(), before);
}

TEST_F(ThreadPoolTest, TheModelComputesOnThem)
{
    const fs::path path = model({{{"a"}}});
    const std::set<std::string> before = threads();
    const auto loaded = LoadedModel::create(path);
    const std::vector<std::string> come = newThreads(poolThreads(), before);
    ASSERT_FALSE(come.empty());
    const std::string& thread = come.front();
    EXPECT_TRUE(waitUntil([&] { return isAsleep(thread); }));
    const std::string sleepsBefore = sleeps(thread);
    std::vector<ChatPrompt::Token> prompt = loaded->tokenize("Some text.");
    EXPECT_EQ(loaded->evaluate(prompt, m_token), 0);
    // It was woken, and has nothing to do by now.
    EXPECT_TRUE(waitUntil([&] { return sleeps(thread) != sleepsBefore; }));
}

TEST_F(ThreadPoolTest, ThreadsStayFromOneAnswerToTheNextAndGoWithTheEngine)
{
    const fs::path path = model({{{"a"}}});
    const std::set<std::string> before = threads();
    {
        LlamaEngine engine;
        const auto answer = [&] {
            return engine.generate(path, "", "", 5, m_token, [](const std::string&) {});
        };
        EXPECT_EQ(answer(), "a");
        const std::set<std::string> first = threads();
        EXPECT_EQ(answer(), "a");
        EXPECT_EQ(threads(), first);
    }
    newThreads(0, before);
}

} // namespace
