#include "Pithwise.h"

#include <array>

namespace Pithwise {

namespace {

/// The wording of one mode before and after its phrase, and the phrase and the budget of tokens for
/// each length. The numbers were found by trying.
struct Row
{
    std::string_view before;
    std::array<std::string_view, allSummaryLengths.size()> phrases;
    std::string_view after;
    std::array<int, allSummaryLengths.size()> maxTokens;
};

constexpr std::array<Row, allSummaryModes.size()> rows = {{
    {"Summarize the text as exactly 3 key takeaways. Use Markdown bullets starting with \"- \", ",
     {"each under 15 words", "each one clear sentence",
      "each two to three sentences with specific details"},
     ".",
     {110, 220, 440}},
    {"Write an executive summary as ",
     {"one short paragraph of 2 sentences", "one paragraph of 4 to 5 sentences",
      "two paragraphs totalling 8 to 10 sentences"},
     ". Lead with the most important point and finish with any implication or decision needed.",
     {110, 240, 460}},
    {"Write a TL;DR in ",
     {"a single sentence under 25 words", "two sentences", "three to four sentences"},
     ". Begin with \"**TL;DR:** \".",
     {60, 110, 210}},
    {"Extract the action items and next steps as a Markdown checklist, each line starting with "
     "\"- [ ] \", ",
     {"at most 3 items", "at most 6 items", "every item, adding brief context to each"},
     ". Include the owner and deadline when the text mentions them. If there are no action items, "
     "reply exactly: No action items found.",
     {120, 260, 520}},
}};

} // namespace

Instruction instruction(SummaryMode mode, SummaryLength length)
{
    const Row& row = rows.at(static_cast<std::size_t>(mode));
    const auto position = static_cast<std::size_t>(length);
    std::string text(row.before);
    text += row.phrases.at(position);
    text += row.after;
    return {std::move(text), row.maxTokens.at(position)};
}

} // namespace Pithwise
