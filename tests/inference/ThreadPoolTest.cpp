#include "ThreadPool.h"

#include "EngineFixture.h"
#include "LlamaHandles.h"
#include "LoadedModel.h"
#include "WaitUntil.h"

#include <unistd.h>

#include <algorithm>
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

    /// Waits until this many threads have come since `before`.
    static void expectNew(std::size_t count, const std::set<std::string>& before)
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
    }
};

TEST_F(ThreadPoolTest, TheCallingThreadIsOneOfThePool)
{
    const auto loaded = LoadedModel::create(model({{{"a"}}})); // so that there is a back end
    const std::set<std::string> before = threads();
    const ThreadPool pool(4);
    expectNew(3, before);
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
    const auto processors = static_cast<std::size_t>(::sysconf(_SC_NPROCESSORS_ONLN));
    const std::size_t computing = processors > 4 ? processors - 2 : 2;
    expectNew(computing - 1, before); // besides this one
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
    expectNew(0, before);
}

} // namespace
