#pragma once

#include "CancelToken.h"
#include "ChatPrompt.h"
#include "LlamaHandles.h"
#include "ThreadPool.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// A model with its context: what LlamaEngine asks of llama.cpp, with everything checked beforehand
/// that llama.cpp would abort on. One thread at a time.
class LoadedModel
{
public:
    /// Loads the model at `path`. Throws AppError.
    static std::unique_ptr<LoadedModel> create(const std::filesystem::path& path);

    /// The tokens of `text`, the markers of the chat template among them read as such.
    std::vector<ChatPrompt::Token> tokenize(const std::string& text) const;

    /// Forgets everything evaluated so far.
    void clear();

    /// Evaluates `tokens` after those before. Returns 0 or the code of the failure: llama.cpp's
    /// own, 1 (llama.cpp's code for no room) also where the tokens cannot fit into the context.
    /// Stops with a code when `token` is cancelled.
    int evaluate(std::span<ChatPrompt::Token> tokens, const CancelToken& token);

    /// The next token, sampled after the last one evaluated.
    ChatPrompt::Token sample(llama_sampler& sampler) const;

    bool endsGeneration(ChatPrompt::Token token) const;

    /// The bytes `token` stands for: nothing for control tokens and those of over 256 bytes.
    std::string piece(ChatPrompt::Token token) const;

private:
    LoadedModel(LlamaHandles::Model model, LlamaHandles::Context context);

    void requireTokens() const;
    bool hasUsableLogits() const;

    LlamaHandles::Model m_model; // declared first: outlives the context, as do the threads
    ThreadPool m_threads;
    LlamaHandles::Context m_context;
    const llama_vocab* m_vocab;
};
