#include "LlamaEngine.h"

#include "AnswerText.h"
#include "AppError.h"
#include "EvaluationError.h"
#include "LoadedModel.h"
#include "WhiteSpace.h"

#include <cassert>

/// A new sampler for every call, with a fixed seed, so that no request influences the next.
static LlamaHandles::Sampler createSampler()
{
    LlamaHandles::Sampler chain{llama_sampler_chain_init(llama_sampler_chain_default_params())};
    llama_sampler_chain_add(chain.get(), llama_sampler_init_top_k(LlamaEngine::topK));
    llama_sampler_chain_add(chain.get(), llama_sampler_init_top_p(LlamaEngine::topP, 1));
    llama_sampler_chain_add(chain.get(), llama_sampler_init_temp(LlamaEngine::temperature));
    llama_sampler_chain_add(chain.get(), llama_sampler_init_dist(LlamaEngine::seed));
    return chain;
}

/// Generates up to `maxTokens` tokens after the evaluated prompt.
static std::string answer(LoadedModel& loaded, int maxTokens, const CancelToken& token,
                          const LlamaEngine::TextCallback& onUpdate)
{
    const LlamaHandles::Sampler sampler = createSampler();
    AnswerText answer;
    for (int i = 0; i < maxTokens && !token.isCancelled(); ++i) {
        ChatPrompt::Token next = loaded.sample(*sampler);
        if (loaded.endsGeneration(next))
            break;
        if (answer.append(loaded.piece(next)))
            onUpdate(answer.text());
        if (loaded.evaluate({&next, 1}, token) != 0)
            break;
    }
    return answer.text();
}

LlamaEngine& LlamaEngine::shared()
{
    // Never destroyed, because a run may still be using the model when the process exits.
    static auto* const engine = new LlamaEngine;
    return *engine;
}

LlamaEngine::LlamaEngine() = default;
LlamaEngine::~LlamaEngine() = default;

std::string LlamaEngine::generate(const std::filesystem::path& path, std::string_view system,
                                  std::string_view user, int maxTokens, const CancelToken& token,
                                  const TextCallback& onUpdate)
{
    assert(maxTokens >= 0);
    const MutexLock lock(m_lock);
    if (!m_loaded)
        m_loaded = LoadedModel::create(path);
    LoadedModel& loaded = *m_loaded;
    std::vector<ChatPrompt::Token> prompt = ChatPrompt::fitted(
        system, user, maxTokens, [&](const std::string& text) { return loaded.tokenize(text); });
    loaded.clear();
    const int code = loaded.evaluate(prompt, token);
    if (token.isCancelled())
        return {};
    if (code != 0)
        throw EvaluationError::of(code);
    return std::string(WhiteSpace::trimmed(answer(loaded, maxTokens, token, onUpdate)));
}
