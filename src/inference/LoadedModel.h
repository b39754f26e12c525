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

/// A model with its context. Makes LlamaEngine's calls to llama.cpp, and checks beforehand
/// everything that llama.cpp would abort on. One thread at a time.
class LoadedModel
{
public:
    /// Loads the model at `path`. Throws AppError.
    static std::unique_ptr<LoadedModel> create(const std::filesystem::path& path);

    /// The tokens of `text`. Markers of the chat template become the tokens that they stand for.
    /// Throws AppError.
    std::vector<ChatPrompt::Token> tokenize(const std::string& text) const;

    /// Forgets everything evaluated so far.
    void clear();

    /// Evaluates `tokens` as the continuation of those evaluated before. Returns 0, or llama.cpp's
    /// code for the failure; that is 1 (no room) also if the tokens do not fit into the context.
    /// Stops with such a code once `token` is cancelled.
    int evaluate(std::span<ChatPrompt::Token> tokens, const CancelToken& token);

    /// The next token, sampled after the last one evaluated. Throws AppError.
    ChatPrompt::Token sample(llama_sampler& sampler) const;

    bool endsGeneration(ChatPrompt::Token token) const;

    /// The bytes that `token` stands for; none for control tokens and for those of over 256 bytes.
    /// Throws AppError.
    std::string piece(ChatPrompt::Token token) const;

private:
    LoadedModel(LlamaHandles::Model model, LlamaHandles::Context context);

    void requireTokens() const;
    bool hasUsableLogits() const;

    LlamaHandles::Model m_model; // before the context, which it must outlive, as must m_threads
    ThreadPool m_threads;
    LlamaHandles::Context m_context;
    const llama_vocab* m_vocab;
};
