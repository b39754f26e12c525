#include "Pithwise.h"

#include <gtest/gtest.h>

namespace {

using enum SummaryMode;
using enum SummaryLength;

TEST(PithwiseInstructionTest, EveryPairHasItsText)
{
    const std::string bulletsText = "Summarize the text as exactly 3 key takeaways. Use Markdown "
                                    "bullets starting with \"- \", ";
    EXPECT_EQ(Pithwise::instruction(bullets, brief).text, bulletsText + "each under 15 words.");
    EXPECT_EQ(Pithwise::instruction(bullets, balanced).text,
              bulletsText + "each one clear sentence.");
    EXPECT_EQ(Pithwise::instruction(bullets, detailed).text,
              bulletsText + "each two to three sentences with specific details.");

    const std::string executiveEnd = ". Lead with the most important point and finish with any "
                                     "implication or decision needed.";
    EXPECT_EQ(Pithwise::instruction(executive, brief).text,
              "Write an executive summary as one short paragraph of 2 sentences" + executiveEnd);
    EXPECT_EQ(Pithwise::instruction(executive, balanced).text,
              "Write an executive summary as one paragraph of 4 to 5 sentences" + executiveEnd);
    EXPECT_EQ(Pithwise::instruction(executive, detailed).text,
              "Write an executive summary as two paragraphs totalling 8 to 10 sentences" +
                  executiveEnd);

    const std::string tldrEnd = ". Begin with \"**TL;DR:** \".";
    EXPECT_EQ(Pithwise::instruction(tldr, brief).text,
              "Write a TL;DR in a single sentence under 25 words" + tldrEnd);
    EXPECT_EQ(Pithwise::instruction(tldr, balanced).text,
              "Write a TL;DR in two sentences" + tldrEnd);
    EXPECT_EQ(Pithwise::instruction(tldr, detailed).text,
              "Write a TL;DR in three to four sentences" + tldrEnd);

    const std::string actionsText = "Extract the action items and next steps as a Markdown "
                                    "checklist, each line starting with \"- [ ] \", ";
    const std::string actionsEnd = ". Include the owner and deadline when the text mentions them. "
                                   "If there are no action items, reply exactly: No action items "
                                   "found.";
    EXPECT_EQ(Pithwise::instruction(actions, brief).text,
              actionsText + "at most 3 items" + actionsEnd);
    EXPECT_EQ(Pithwise::instruction(actions, balanced).text,
              actionsText + "at most 6 items" + actionsEnd);
    EXPECT_EQ(Pithwise::instruction(actions, detailed).text,
              actionsText + "every item, adding brief context to each" + actionsEnd);
}

TEST(PithwiseInstructionTest, EveryPairHasItsBudget)
{
    const int budgets[4][3] = {{110, 220, 440}, {110, 240, 460}, {60, 110, 210}, {120, 260, 520}};
    for (std::size_t mode = 0; mode < 4; ++mode) {
        for (std::size_t length = 0; length < 3; ++length) {
            EXPECT_EQ(
                Pithwise::instruction(allSummaryModes[mode], allSummaryLengths[length]).maxTokens,
                budgets[mode][length]);
        }
    }
}

} // namespace
