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

/// Turns a text into its summary. Texts are valid UTF-8; characters are user-perceived ones. Every
/// function may be called from any thread.
namespace Pithwise {

constexpr std::size_t singlePassLimit = 7500; // characters that are summarised at once
constexpr std::size_t sectionSize = 6000;     // characters, of a longer text
constexpr std::size_t mostSections = 10;

/// What the model is told to do for one mode and length of summary.
struct Instruction
{
    std::string text;
    int maxTokens = 0; // of the final answer
};

Instruction instruction(SummaryMode mode, SummaryLength length);

/// Cuts `text` into runs of whole lines with at most `size` characters each, as views into `text`.
/// A line longer than that is cut into pieces of `size`. Chunks may be empty: before a line of
/// exactly `size` that starts a chunk there is an empty one. Linear. Requires: size is at least 1.
std::vector<std::string_view> chunks(std::string_view text, std::size_t size);

/// Called with one progress line, or with the whole answer so far.
using TextCallback = std::function<void(const std::string& text)>;

/// The signature of LlamaEngine::generate, so that a test or a command can put another function in
/// its place.
using Generate = std::function<std::string(
    const std::filesystem::path& model, std::string_view system, std::string_view user,
    int maxTokens, const CancelToken& token, const TextCallback& onUpdate)>;

/// Calls LlamaEngine::shared().generate(), unless it is empty with the model `chosen` in place of
/// the one that it is called with.
Generate sharedEngine(std::filesystem::path chosen = {});

/// Summarises `text` and returns the summary. A text of more than
/// `singlePassLimit` characters is summarised by way of notes on sections that are spread over it.
/// Blocks; not for the main thread.
///
/// `status` gets progress lines and `output` the growing final answer, both on the calling thread.
/// Once `token` is cancelled, the final answer so far is returned; that is "" before the final
/// pass. Errors of `generate` pass through.
std::string run(std::string_view text, SummaryMode mode, SummaryLength length,
                const CancelToken& token, const TextCallback& status, const TextCallback& output,
                const Generate& generate = sharedEngine());

} // namespace Pithwise
