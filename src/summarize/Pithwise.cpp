#include "Pithwise.h"

#include "Characters.h"
#include "LlamaEngine.h"
#include "ModelFile.h"
#include "WhiteSpace.h"

#include <optional>
#include <utility>

namespace Pithwise {

constexpr int noteTokens = 170;

constexpr std::string_view systemText =
    "You are a precise summarization assistant. Use only information present in the provided text. "
    "Never invent facts. Reply with the summary only, formatted as Markdown, without any preamble.";
constexpr std::string_view sectionText =
    "Summarize the key facts, decisions and any tasks (with owners and deadlines) from this "
    "excerpt in 3 to 5 concise sentences.\n\nExcerpt:\n";

Generate sharedEngine(std::filesystem::path chosen)
{
    return [chosen = std::move(chosen)](const std::filesystem::path& model, std::string_view system,
                                        std::string_view user, int maxTokens,
                                        const CancelToken& token, const TextCallback& onUpdate) {
        return LlamaEngine::shared().generate(chosen.empty() ? model : chosen, system, user,
                                              maxTokens, token, onUpdate);
    };
}

/// At most `mostSections` of the chunks of `text`, spread evenly. The first is always among them.
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

namespace {

/// What every call of one run shares.
struct Run
{
    std::filesystem::path model;
    const CancelToken& token;
    const TextCallback& status;
    const Generate& generate;

    std::string ask(const std::string& user, int maxTokens, const TextCallback& onUpdate) const
    {
        return generate(model, systemText, user, maxTokens, token, onUpdate);
    }

    /// One line of notes for each section, or nothing if the run is cancelled in between.
    std::optional<std::string> notes(const std::vector<std::string_view>& parts) const
    {
        const std::string total = std::to_string(parts.size());
        std::string notes;
        for (std::size_t i = 1; i <= parts.size(); ++i) {
            if (token.isCancelled())
                return std::nullopt;
            const std::string number = std::to_string(i);
            status("Reading part " + number + " of " + total + "…");
            const std::string note = ask(std::string(sectionText).append(parts[i - 1]), noteTokens,
                                         [](const std::string&) {});
            notes += (i > 1 ? "\nSection " : "Section ") + number + ": " + note;
        }
        return notes;
    }
};

} // namespace

std::string run(std::string_view text, SummaryMode mode, SummaryLength length,
                const CancelToken& token, const TextCallback& status, const TextCallback& output,
                const Generate& generate)
{
    const Run run{ModelFile::path(), token, status, generate};
    std::optional<std::string> body = WhiteSpace::normalised(text);
    std::string label = "Text:";
    if (Characters::count(*body) > singlePassLimit) {
        body = run.notes(sections(*body));
        label = "Notes from consecutive sections of one document:";
    }
    if (!body || token.isCancelled())
        return {};
    status("Summarizing…");
    const auto [task, maxTokens] = instruction(mode, length);
    return run.ask(task + "\n\n" + label + "\n" + *body, maxTokens, output);
}

} // namespace Pithwise
