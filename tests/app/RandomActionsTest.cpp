#include "AppStateFixture.h"
#include "BackgroundThreads.h"

#include <random>
#include <thread>

namespace {

/// Does what users do, in random order and at random moments, with services that answer in their
/// own time, and looks after every step whether the state can be true.
class RandomActionsTest : public AppStateFixture
{
protected:
    void begin(unsigned seed)
    {
        m_random.seed(seed);
        m_token.reset();
        m_output.reset();
        isModelReady = true;
        state = std::make_unique<AppState>(quickServices());
        QObject::connect(state.get(), &AppState::willChange, state.get(), [this] { noteRun(); });
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }

    /// Unlike any other, and sometimes one that fails or has nothing in it.
    std::string newText()
    {
        const std::string number = std::to_string(++m_texts);
        switch (below(8)) {
        case 0:
            return " \n";
        case 1:
            return "fails " + number;
        case 2: // is read in sections
            return "long " + number + std::string(8000, 'x');
        default:
            return "text " + number;
        }
    }

    /// At random, but the same for the same text, on whatever thread.
    static void dawdle(std::string_view text)
    {
        const std::size_t time = std::hash<std::string_view>()(text) % 4;
        for (std::size_t i = 0; i < time; ++i)
            std::this_thread::yield();
    }

    static std::string read(const std::string& text)
    {
        dawdle(text);
        if (text.starts_with("fails"))
            throw std::runtime_error("read: " + text);
        return text;
    }

    /// Writes what shows of which text it is, and heeds the token or not.
    static std::string generate(const std::filesystem::path&, std::string_view,
                                std::string_view user, int, const CancelToken& token,
                                const Pithwise::TextCallback& onUpdate)
    {
        const std::size_t begin = user.find("\nText:\n");
        if (begin == std::string_view::npos)
            return "note";
        const std::string text(user.substr(begin + 7));
        for (int i = 0; i < 4; ++i) {
            if (text.size() % 2 == 0 && token.isCancelled())
                return text + ": cancelled";
            onUpdate(text + ": " + std::to_string(i));
            dawdle(text);
        }
        if (text.ends_with('3'))
            throw std::runtime_error("run: " + text);
        return text + ": end";
    }

    AppServices quickServices()
    {
        AppServices quick = services();
        quick.readDocument = [](const std::filesystem::path& file) {
            return read(file.filename().string());
        };
        quick.captureText = [text = newText()](ScreenGrab::Kind) { return read(text); };
        quick.clipboardText = [text = newText()]() -> std::optional<std::string> { return text; };
        quick.generate = generate;
        return quick;
    }

    /// At every announcement: a new run takes the place of a cancelled one.
    void noteRun()
    {
        const auto token = state->token();
        if (token == m_token)
            return;
        EXPECT_TRUE(m_token == nullptr || m_token->isCancelled());
        EXPECT_TRUE(isModelReady);
        m_token = token;
        m_text = state->sourceText->trimmed();
        m_output.reset();
        EXPECT_FALSE(m_text.isEmpty());
    }

    /// Between any two steps.
    void check()
    {
        const QString& output = state->output;
        const bool isOfRun =
            m_text.size() > 7500 ? output == "note" : output.startsWith(m_text + ':');
        EXPECT_TRUE(output.isEmpty() || isOfRun) << snapshot();
        if (m_token && m_token->isCancelled()) {
            EXPECT_EQ(output, m_output.value_or(output)) << "A cancelled run has written.";
            m_output = output;
        }
        EXPECT_EQ(state->token(), m_token);
    }

    void act()
    {
        switch (below(14)) {
        case 0:
            state->sourceText = QString::fromStdString(newText());
            return;
        case 1:
            return state->summarize();
        case 2:
            state->stop();
            EXPECT_FALSE(state->isWorking);
            EXPECT_EQ(state->status.get(), "");
            return;
        case 3:
            return state->setSource(newText(), "Label");
        case 4:
            return state->loadFile("/" + newText());
        case 5:
            state->fetchURL();
            return;
        case 6:
            return answerPage();
        case 7:
            return state->capture(ScreenGrab::Kind::screen);
        case 8:
            return state->useClipboard();
        case 9:
            state->handleHotkey();
            return;
        case 10:
            return answerSelection();
        case 11:
            isModelReady = below(4) != 0;
            return;
        case 12:
            return state->copyMarkdown();
        default:
            QCoreApplication::processEvents();
        }
    }

    void answerPage()
    {
        if (pages.empty())
            return;
        const std::string text = newText();
        if (text.starts_with("fails"))
            fail(pages.front(), text);
        else
            answer(pages.front(), text);
        pages.pop_front();
    }

    void answerSelection()
    {
        if (selections.empty())
            return;
        answer(selections.front(), below(2) == 0 ? Grabbed() : Grabbed(newText()));
        selections.pop_front();
    }

    /// What a run that was left alone comes to.
    void checkEnd()
    {
        while (!pages.empty())
            answerPage();
        while (!selections.empty())
            answerSelection();
        isModelReady = true;
        state->setSource("the last text", "Label");
        do {
            EXPECT_TRUE(waitUntil([&] {
                check();
                return !BackgroundThreads::isWorkLeft();
            }));
            hearAll();
        } while (BackgroundThreads::isWorkLeft()); // what was heard may begin a run
        EXPECT_FALSE(state->token()->isCancelled());
        const bool isLast = m_text == "the last text"; // no source has come in after it
        EXPECT_EQ(state->output.get(), isLast ? "the last text: end" : state->output.get());
    }

    std::mt19937 m_random;
    unsigned m_texts = 0;
    std::shared_ptr<const CancelToken> m_token; // of the latest run
    QString m_text;                             // of that run
    std::optional<QString> m_output;            // since it has been cancelled
};

TEST_F(RandomActionsTest, InAThousandSequencesOfActionsNoLateUpdateShows)
{
    for (unsigned seed = 1; seed <= 1000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        begin(seed);
        for (int step = 0; step < 20; ++step) {
            act();
            check();
        }
        if (seed % 2 == 0)
            checkEnd();
        state.reset(); // with all that is under way
        while (!pages.empty())
            answerPage();
        while (!selections.empty())
            answerSelection();
        timers.clear();
    }
}

} // namespace
