#include "LoadedModel.h"

#include "AbortTrap.h"
#include "AppError.h"

#include <ggml-backend.h>

#include <algorithm>
#include <array>
#include <limits>
#include <thread>

using ChatPrompt::Token;

static constexpr int evaluationNoRoom = 1;  // llama_decode's code for a batch without room
static constexpr int evaluationFailed = -3; // llama_decode's code for a failed computation

static void prepareBackend()
{
    llama_log_set([](ggml_log_level, const char*, void*) {}, nullptr);
#ifdef PITHWISE_BACKEND_DIR
    // Only this folder: without one, llama.cpp would also look into the working directory.
    ggml_backend_load_all_from_path(PITHWISE_BACKEND_DIR);
#endif
    llama_backend_init();
}

static LlamaHandles::Model loadModel(const std::filesystem::path& path)
{
    llama_model_params parameters = llama_model_default_params();
    parameters.n_gpu_layers = 99; // every layer
    try {
        const AbortTrap trap;
        if (LlamaHandles::Model model{llama_model_load_from_file(path.c_str(), parameters)})
            return model;
    } catch (const std::exception&) {
        // Falls through: llama.cpp's own words are not fit for users.
    }
    throw AppError("Could not load the language model.");
}

static LlamaHandles::Context createContext(llama_model& model)
{
    // Two processors are left to the rest of the machine.
    const unsigned processors = std::thread::hardware_concurrency();
    const auto threads = static_cast<int>(std::max(processors, 4U) - 2);
    llama_context_params parameters = llama_context_default_params();
    parameters.n_ctx = ChatPrompt::contextTokens;
    parameters.n_batch = ChatPrompt::contextTokens;
    parameters.n_threads = threads;
    parameters.n_threads_batch = threads;
    try {
        const AbortTrap trap;
        LlamaHandles::Context context{llama_init_from_model(&model, parameters)};
        // A model that only encodes has no memory; llama.cpp would abort on a long prompt.
        if (context && llama_get_memory(context.get()) != nullptr)
            return context;
    } catch (const std::exception&) {
        // As above.
    }
    throw AppError("Could not create the model context.");
}

std::unique_ptr<LoadedModel> LoadedModel::create(const std::filesystem::path& path)
{
    prepareBackend();
    LlamaHandles::Model model = loadModel(path);
    LlamaHandles::Context context = createContext(*model);
    const llama_vocab* vocab = llama_model_get_vocab(model.get());
    if (vocab == nullptr || llama_vocab_type(vocab) == LLAMA_VOCAB_TYPE_NONE)
        throw AppError("Model not loaded.");
    return std::unique_ptr<LoadedModel>(new LoadedModel(std::move(model), std::move(context)));
}

LoadedModel::LoadedModel(LlamaHandles::Model model, LlamaHandles::Context context)
    : m_model(std::move(model)),
      m_context(std::move(context)),
      m_vocab(llama_model_get_vocab(m_model.get()))
{}

std::vector<Token> LoadedModel::tokenize(const std::string& text) const
{
    constexpr std::size_t spare = 16;
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()) - spare)
        throw AppError("The text is too long for the language model.");
    const AbortTrap trap;
    const auto length = static_cast<int>(text.size());
    std::vector<Token> tokens(text.size() + spare);
    const auto tokenizeInto = [&](std::vector<Token>& buffer) {
        return llama_tokenize(m_vocab, text.data(), length, buffer.data(),
                              static_cast<int>(buffer.size()), false, true);
    };
    int count = tokenizeInto(tokens);
    if (count < 0) {
        tokens.assign(static_cast<std::size_t>(-static_cast<std::int64_t>(count)), 0);
        count = tokenizeInto(tokens);
    }
    tokens.resize(std::min(tokens.size(), static_cast<std::size_t>(std::max(count, 0))));
    return tokens;
}

void LoadedModel::clear()
{
    llama_memory_clear(llama_get_memory(m_context.get()), true);
}

int LoadedModel::evaluate(std::span<Token> tokens, const CancelToken& token)
{
    if (tokens.size() > static_cast<std::size_t>(ChatPrompt::contextTokens))
        return evaluationNoRoom;
    const auto isCancelled = [](void* data) {
        return static_cast<const CancelToken*>(data)->isCancelled();
    };
    llama_set_abort_callback(m_context.get(), isCancelled, const_cast<CancelToken*>(&token));
    const auto count = static_cast<int>(tokens.size());
    const int code = llama_decode(m_context.get(), llama_batch_get_one(tokens.data(), count));
    llama_set_abort_callback(m_context.get(), nullptr, nullptr);
    if (code == 0 && !hasUsableLogits())
        return evaluationFailed;
    return code;
}

/// Damaged weights lead to numbers that are none; the sampler's sorting is undefined on them.
bool LoadedModel::hasUsableLogits() const
{
    const float* logits = llama_get_logits_ith(m_context.get(), -1);
    if (logits == nullptr)
        return false;
    bool usable = true;
    const int count = llama_vocab_n_tokens(m_vocab);
    for (int i = 0; i < count; ++i)
        usable &= logits[i] < std::numeric_limits<float>::infinity(); // false for NaN too
    return usable;
}

Token LoadedModel::sample(llama_sampler& sampler) const
{
    const AbortTrap trap;
    return llama_sampler_sample(&sampler, m_context.get(), -1);
}

bool LoadedModel::endsGeneration(Token token) const
{
    return llama_vocab_is_eog(m_vocab, token);
}

std::string LoadedModel::piece(Token token) const
{
    const AbortTrap trap;
    std::array<char, 256> buffer{};
    const int length = llama_token_to_piece(m_vocab, token, buffer.data(),
                                            static_cast<int>(buffer.size()), 0, false);
    const std::size_t kept = std::min(buffer.size(), static_cast<std::size_t>(std::max(length, 0)));
    return {buffer.data(), kept};
}
