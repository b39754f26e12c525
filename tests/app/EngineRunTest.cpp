#include "AppStateFixture.h"
#include "LivingThreads.h"
#include "LlamaEngine.h"
#include "StandinModel.h"

#include <QCoreApplication>

namespace {

/// With the real engine on a stand-in for the model.
class EngineRunTest : public AppStateFixture
{
protected:
    void useModel(const StandinModel::Script& script)
    {
        const std::filesystem::path file = std::filesystem::path(std::getenv("HOME")) / "model";
        StandinModel::write(script, file);
        AppServices real = services();
        real.generate = [this, file, threads = m_runs](
                            const std::filesystem::path&, std::string_view system,
                            std::string_view user, int maxTokens, const CancelToken& token,
                            const Pithwise::TextCallback& onUpdate) {
            threads.countThisOne();
            return m_engine.generate(file, system, user, maxTokens, token, onUpdate);
        };
        state = std::make_unique<AppState>(real);
    }

    const LivingThreads m_runs{};
    LlamaEngine m_engine;
};

TEST_F(EngineRunTest, ASummaryOfTheModelStreamsIntoTheState)
{
    const std::string script = "- The first takeaway.\n- A naïve third 👩.";
    useModel({StandinModel::split("\n" + script + "\n")});
    state->setSource("Some text.", "Clipboard");
    waitForOutput(QString::fromStdString(script));
    expectIdle();
}

TEST_F(EngineRunTest, AModelThatNeverEndsIsStopped)
{
    useModel({{{"on "}, {"and "}}, StandinModel::Ending::never});
    state->mode = SummaryMode::actions;
    state->length = 2;
    state->setSource("Some text.", "Clipboard");
    EXPECT_TRUE(waitUntil([&] { return !state->output->isEmpty() || !state->isWorking; }));
    state->stop();
    const QString output = state->output;
    EXPECT_TRUE(waitUntil([&] { return m_runs.number() == 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(state->output.get(), output);
    expectIdle();
}

TEST_F(EngineRunTest, AModelThatCannotBeLoadedIsAnError)
{
    AppServices real = services();
    real.generate = [this](const std::filesystem::path&, auto&&... rest) {
        return m_engine.generate("/missing.gguf", rest...);
    };
    state = std::make_unique<AppState>(real);
    state->setSource("Some text.", "Clipboard");
    waitForError("Could not load the language model.");
    expectIdle("Could not load the language model.");
}

} // namespace
