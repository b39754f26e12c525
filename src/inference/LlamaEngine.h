#pragma once

#include "CancelToken.h"
#include "Mutex.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

class LoadedModel;

/// The local language model, through llama.cpp. The model is loaded by the first `generate` and
/// kept; llama.cpp logs nothing.
class LlamaEngine
{
public:
    using TextCallback = std::function<void(const std::string& text)>;

    /// The engine of the process, never destroyed.
    static LlamaEngine& shared();

    LlamaEngine();
    ~LlamaEngine();
    LlamaEngine(const LlamaEngine&) = delete;
    LlamaEngine& operator=(const LlamaEngine&) = delete;

    /// Answers `user` under the instructions `system` (both valid UTF-8) with at most `maxTokens`
    /// (0 to 4080) tokens and returns the answer, trimmed. Too long a `user` loses its end.
    /// Blocks, also while another thread's call runs; any thread may call it, not `onUpdate`.
    /// `path` counts only until a model is loaded: the first one stays.
    ///
    /// `onUpdate` gets the whole text so far, valid UTF-8 and untrimmed, whenever it has grown, on
    /// the calling thread with the engine's lock held: it must not call back into the engine.
    ///
    /// A cancelled `token` stops it, also while the prompt is evaluated; the text so far is
    /// returned. Throws AppError when the model cannot be loaded or the prompt not be evaluated;
    /// the next call then starts afresh.
    std::string generate(const std::filesystem::path& path, std::string_view system,
                         std::string_view user, int maxTokens, const CancelToken& token,
                         const TextCallback& onUpdate);

private:
    Mutex m_lock;
    std::unique_ptr<LoadedModel> m_loaded PITHWISE_GUARDED_BY(m_lock);
};
