#include "Pithwise.h"

#include "AppError.h"
#include "ModelFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr const char* systemText =
    "You are a precise summarization assistant. Use only information present in the provided text. "
    "Never invent facts. Reply with the summary only, formatted as Markdown, without any preamble.";
constexpr const char* sectionText =
    "Summarize the key facts, decisions and any tasks (with owners and deadlines) from this "
    "excerpt in 3 to 5 concise sentences.\n\nExcerpt:\n";
const std::string tldrBrief = "Write a TL;DR in a single sentence under 25 words. Begin with "
                              "\"**TL;DR:** \".";

/// Stands in for the engine and keeps what it was asked.
struct RecordingEngine
{
    struct Call
    {
        std::filesystem::path model;
        std::string system;
        std::string user;
        int maxTokens;
    };

    std::vector<Call> calls;
    std::function<std::string(std::size_t number)> reply = [](std::size_t number) {
        return "answer " + std::to_string(number);
    };

    Pithwise::Generate generate()
    {
        return [this](const std::filesystem::path& model, std::string_view system,
                      std::string_view user, int maxTokens, const CancelToken&,
                      const Pithwise::TextCallback& onUpdate) {
            calls.push_back({model, std::string(system), std::string(user), maxTokens});
            onUpdate("partial " + std::to_string(calls.size()));
            return reply(calls.size());
        };
    }
};

class PithwiseTest : public testing::Test
{
protected:
    std::string run(const std::string& text)
    {
        return Pithwise::run(
            text, SummaryMode::tldr, SummaryLength::brief, token,
            [this](const std::string& line) { statuses.push_back(line); },
            [this](const std::string& partial) { outputs.push_back(partial); }, engine.generate());
    }

    /// `count` sections of `size` characters each, whose lines cannot share a chunk.
    static std::string sections(std::size_t count, std::size_t size = 5000)
    {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string mark = "<" + std::to_string(i) + ">";
            text += (i > 0 ? "\n" : "") + mark + std::string(size - mark.size(), 'x');
        }
        return text;
    }

    /// The number in the mark that the section of the call at `index` begins with.
    std::string sectionOf(std::size_t index) const
    {
        const std::string body =
            engine.calls.at(index).user.substr(std::string(sectionText).size());
        return body.substr(1, body.find('>') - 1);
    }

    std::vector<std::string> sectionsRead() const
    {
        std::vector<std::string> read;
        for (std::size_t i = 0; i + 1 < engine.calls.size(); ++i)
            read.push_back(sectionOf(i));
        return read;
    }

    RecordingEngine engine;
    CancelToken token;
    std::vector<std::string> statuses;
    std::vector<std::string> outputs;
};

TEST_F(PithwiseTest, AShortTextGoesThroughInOneCall)
{
    EXPECT_EQ(run("  Hello\r\n  world\u00A0! "), "answer 1");
    ASSERT_EQ(engine.calls.size(), 1U);
    EXPECT_EQ(engine.calls[0].model, ModelFile::path());
    EXPECT_EQ(engine.calls[0].model.filename(), "Qwen2.5-1.5B-Instruct-Q4_K_M.gguf");
    EXPECT_EQ(engine.calls[0].system, systemText);
    EXPECT_EQ(engine.calls[0].user, tldrBrief + "\n\nText:\nHello\n world !");
    EXPECT_EQ(engine.calls[0].maxTokens, 60);
    EXPECT_EQ(statuses, std::vector<std::string>{"Summarizing…"});
    EXPECT_EQ(outputs, std::vector<std::string>{"partial 1"});
}

TEST_F(PithwiseTest, AnEmptyTextIsNotRejected)
{
    EXPECT_EQ(run(""), "answer 1");
    EXPECT_EQ(engine.calls.at(0).user, tldrBrief + "\n\nText:\n");
}

TEST_F(PithwiseTest, ATextOf7500CharactersTakesTheSinglePass)
{
    run(std::string(7500, 'x'));
    EXPECT_EQ(engine.calls.size(), 1U);
    EXPECT_EQ(statuses, std::vector<std::string>{"Summarizing…"});
}

TEST_F(PithwiseTest, ATextOf7501CharactersIsReadInSections)
{
    EXPECT_EQ(run(std::string(7501, 'x')), "answer 3");
    ASSERT_EQ(engine.calls.size(), 3U);
    EXPECT_EQ(engine.calls[0].system, systemText);
    EXPECT_EQ(engine.calls[0].user, sectionText + std::string(6000, 'x'));
    EXPECT_EQ(engine.calls[0].maxTokens, 170);
    EXPECT_EQ(engine.calls[1].user, sectionText + std::string(1501, 'x'));
    EXPECT_EQ(engine.calls[2].user, tldrBrief +
                                        "\n\nNotes from consecutive sections of one document:\n"
                                        "Section 1: answer 1\nSection 2: answer 2");
    EXPECT_EQ(engine.calls[2].maxTokens, 60);
    EXPECT_EQ(statuses, (std::vector<std::string>{"Reading part 1 of 2…", "Reading part 2 of 2…",
                                                  "Summarizing…"}));
    EXPECT_EQ(outputs, std::vector<std::string>{"partial 3"});
}

TEST_F(PithwiseTest, TheLimitCountsCharactersAsPeopleSeeThem)
{
    std::string text;
    for (int i = 0; i < 7500; ++i)
        text += "e\u0301";
    run(text);
    EXPECT_EQ(engine.calls.size(), 1U);
}

TEST_F(PithwiseTest, AnEmptySectionIsSentLikeAnyOther)
{
    run(std::string(6000, 'x') + "\n" + std::string(3000, 'y'));
    ASSERT_EQ(engine.calls.size(), 4U);
    EXPECT_EQ(engine.calls[0].user, sectionText);
}

TEST_F(PithwiseTest, TenSectionsAreAllRead)
{
    run(sections(10));
    EXPECT_EQ(sectionsRead(),
              (std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TEST_F(PithwiseTest, OfElevenSectionsTheFirstTenAreRead)
{
    run(sections(11));
    EXPECT_EQ(sectionsRead(),
              (std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TEST_F(PithwiseTest, OfTwentyFiveSectionsTenAreReadSpreadOverTheText)
{
    run(sections(25));
    EXPECT_EQ(sectionsRead(),
              (std::vector<std::string>{"0", "2", "5", "7", "10", "12", "15", "17", "20", "22"}));
    ASSERT_EQ(statuses.size(), 11U);
    EXPECT_EQ(statuses.front(), "Reading part 1 of 10…");
    EXPECT_EQ(statuses[9], "Reading part 10 of 10…");
    EXPECT_EQ(statuses.back(), "Summarizing…");
}

TEST_F(PithwiseTest, ATokenCancelledBeforehandStopsAShortTextWithoutAStatus)
{
    token.cancel();
    EXPECT_EQ(run("Hello"), "");
    EXPECT_TRUE(statuses.empty());
    EXPECT_TRUE(engine.calls.empty());
}

TEST_F(PithwiseTest, ATokenCancelledBeforehandStopsALongTextWithoutAStatus)
{
    token.cancel();
    EXPECT_EQ(run(sections(3)), "");
    EXPECT_TRUE(statuses.empty());
    EXPECT_TRUE(engine.calls.empty());
}

TEST_F(PithwiseTest, ACancelDuringASectionStopsBeforeTheNext)
{
    engine.reply = [this](std::size_t number) {
        if (number == 2)
            token.cancel();
        return std::string("note");
    };
    EXPECT_EQ(run(sections(4)), "");
    EXPECT_EQ(engine.calls.size(), 2U);
    EXPECT_EQ(statuses.back(), "Reading part 2 of 4…");
}

TEST_F(PithwiseTest, ACancelDuringTheLastSectionStopsBeforeTheFinalPass)
{
    engine.reply = [this](std::size_t number) {
        if (number == 2)
            token.cancel();
        return std::string("note");
    };
    EXPECT_EQ(run(sections(2)), "");
    EXPECT_EQ(statuses.back(), "Reading part 2 of 2…");
}

TEST_F(PithwiseTest, ACancelDuringTheFinalPassKeepsTheTextSoFar)
{
    engine.reply = [this](std::size_t) {
        token.cancel();
        return std::string("so far");
    };
    EXPECT_EQ(run("Hello"), "so far");
}

TEST_F(PithwiseTest, AnErrorOfTheEngineEndsTheRunUnchanged)
{
    engine.reply = [](std::size_t number) -> std::string {
        if (number == 2)
            throw AppError("Model evaluation failed (1).");
        return "note";
    };
    try {
        run(sections(3));
        FAIL();
    } catch (const AppError& error) {
        EXPECT_EQ(error.message(), "Model evaluation failed (1).");
    }
    EXPECT_EQ(engine.calls.size(), 2U);
}

} // namespace
