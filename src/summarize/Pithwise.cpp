#include "Pithwise.h"

#include "Characters.h"
#include "LlamaEngine.h"
#include "ModelFile.h"
#include "WhiteSpace.h"

namespace Pithwise {

constexpr std::size_t singlePassLimit = 7500; // characters
constexpr std::size_t sectionSize = 6000;     // characters
constexpr std::size_t mostSections = 10;
constexpr int noteTokens = 170;

constexpr std::string_view systemText =
    "You are a precise summarization assistant. Use only information present in the provided text. "
    "Never invent facts. Reply with the summary only, formatted as Markdown, without any preamble.";
constexpr std::string_view sectionText =
    "Summarize the key facts, decisions and any tasks (with owners and deadlines) from this "
    "excerpt in 3 to 5 concise sentences.\n\nExcerpt:\n";

Generate sharedEngine()
{
    return [](const std::filesystem::path& model, std::string_view system, std::string_view user,
              int maxTokens, const CancelToken& token, const TextCallback& onUpdate) {
        return LlamaEngine::shared().generate(model, system, user, maxTokens, token, onUpdate);
    };
}

/// At most `mostSections` of the chunks, spread evenly, the first always among them.
static std::vector<std::string_view> sections(std::string_view text)
{
    std::vector<std::string_view> all = chunks(text, sectionSize);
    if (all.size() <= mostSections)
        return all;
    const double step = static_cast<double>(all.size()) / static_cast<double>(mostSections);
    std::vector<std::string_view> kept;
    for (std::size_t i = 0; i < mostSections; ++i)
        kept.push_back(all[static_cast<std::size_t>(static_cast<double>(i) * step)]);
    return kept;
}

std::string run(std::string_view text, SummaryMode mode, SummaryLength length,
                const CancelToken& token, const TextCallback& status, const TextCallback& output,
                const Generate& generate)
{
    const std::filesystem::path model = ModelFile::path();
    std::string body = WhiteSpace::normalised(text);
    std::string_view label = "Text:";
    if (Characters::count(body) > singlePassLimit) {
        const std::vector<std::string_view> parts = sections(body);
        const std::string total = std::to_string(parts.size());
        std::string notes;
        for (std::size_t i = 1; i <= parts.size(); ++i) {
            if (token.isCancelled())
                return {};
            const std::string number = std::to_string(i);
            status("Reading part " + number + " of " + total + "…");
            const std::string user = std::string(sectionText).append(parts[i - 1]);
            const std::string note =
                generate(model, systemText, user, noteTokens, token, [](const std::string&) {});
            notes += (i > 1 ? "\nSection " : "Section ") + number + ": " + note;
        }
        body = std::move(notes);
        label = "Notes from consecutive sections of one document:";
    }
    if (token.isCancelled())
        return {};
    status("Summarizing…");
    const auto [task, maxTokens] = instruction(mode, length);
    const std::string user = task + "\n\n" + std::string(label) + "\n" + body;
    return generate(model, systemText, user, maxTokens, token, output);
}

} // namespace Pithwise
