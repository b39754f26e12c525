#pragma once

#include "CancelToken.h"
#include "Mutex.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

class LoadedModel;

/// The local language model, run by llama.cpp. The first `generate` loads the model, which is then
/// kept. llama.cpp's log is turned off.
class LlamaEngine
{
public:
    using TextCallback = std::function<void(const std::string& text)>;

    // How the next token is drawn, in this order. The seed is fixed, so that a text has one
    // summary.
    static constexpr int topK = 40;
    static constexpr float topP = 0.9F;
    static constexpr float temperature = 0.3F;
    static constexpr std::uint32_t seed = 1234;

    /// The engine of the process, never destroyed.
    static LlamaEngine& shared();

    LlamaEngine();
    ~LlamaEngine();
    LlamaEngine(const LlamaEngine&) = delete;
    LlamaEngine& operator=(const LlamaEngine&) = delete;

    /// Answers `user` under the instructions `system` (both valid UTF-8) with at most `maxTokens`
    /// (0 to 4080) tokens and returns the answer, trimmed. A `user` that is too long loses its end.
    /// Blocks, also while another thread's call runs. Any thread may call it, but `onUpdate` may
    /// not. `path` is the model's file; it is used only until a model has been loaded, which then
    /// stays.
    ///
    /// `onUpdate` gets the whole text so far, valid UTF-8 and untrimmed, whenever it has grown. It
    /// is called on the calling thread with the engine's lock held, so it must not call the engine.
    ///
    /// Cancelling `token` stops the call, also while the prompt is evaluated. It then returns the
    /// text so far. Throws AppError if the model cannot be loaded or the prompt cannot be
    /// evaluated; the next call then starts afresh.
    std::string generate(const std::filesystem::path& path, std::string_view system,
                         std::string_view user, int maxTokens, const CancelToken& token,
                         const TextCallback& onUpdate);

private:
    Mutex m_lock;
    std::unique_ptr<LoadedModel> m_loaded PITHWISE_GUARDED_BY(m_lock);
};
