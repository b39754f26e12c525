#pragma once

#include "CancelToken.h"
#include "SummaryLength.h"
#include "SummaryMode.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Summarising, from a text to its summary. Texts are valid UTF-8; characters are user-perceived
/// ones. Every function may be called from any thread.
namespace Pithwise {

/// What the model is told about a summary of one mode and length.
struct Instruction
{
    std::string text;
    int maxTokens = 0; // of the final answer
};

Instruction instruction(SummaryMode mode, SummaryLength length);

/// Cuts `text` into runs of whole lines of at most `size` characters, views into `text`; a longer
/// line is cut into pieces of `size`. A line of exactly `size` that starts a chunk is preceded by
/// an empty one: chunks may be empty. Linear. Requires: size is at least 1.
std::vector<std::string_view> chunks(std::string_view text, std::size_t size);

/// Takes one progress line, or the whole answer so far.
using TextCallback = std::function<void(const std::string& text)>;

/// LlamaEngine::generate, or what stands in for it.
using Generate = std::function<std::string(
    const std::filesystem::path& model, std::string_view system, std::string_view user,
    int maxTokens, const CancelToken& token, const TextCallback& onUpdate)>;

/// LlamaEngine::shared()'s generate.
Generate sharedEngine();

/// Summarises `text` and returns the summary: in one pass up to 7500 characters, else by way of
/// notes on up to 10 sections spread over the text. Blocks; not for the main thread.
///
/// `status` gets progress lines, `output` the growing final answer, both on the calling thread.
/// Once `token` is cancelled the text of the final answer so far is returned, before the final pass
/// "". Errors of `generate` pass through.
std::string run(std::string_view text, SummaryMode mode, SummaryLength length,
                const CancelToken& token, const TextCallback& status, const TextCallback& output,
                const Generate& generate = sharedEngine());

} // namespace Pithwise
