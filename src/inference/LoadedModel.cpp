#include "LoadedModel.h"

#include "AbortTrap.h"
#include "AppError.h"
#include "Backends.h"
#include "EvaluationError.h"
#include "ModelCheck.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <thread>

using ChatPrompt::Token;

/// Returns what `function` returns. Whatever goes wrong in it, most likely because of a damaged
/// vocabulary, becomes an AppError.
template <typename Function>
static auto trapped(Function function)
{
    try {
        const AbortTrap trap;
        return function();
    } catch (const std::exception&) {
        throw EvaluationError::of(EvaluationError::failed);
    }
}

static void prepareBackend()
{
    llama_log_set([](ggml_log_level, const char*, void*) {}, nullptr);
    Backends::load();
    llama_backend_init();
}

static LlamaHandles::Model loadModel(const std::filesystem::path& path)
{
    llama_model_params parameters = llama_model_default_params();
    parameters.n_gpu_layers = 99; // every layer
    try {
        const AbortTrap trap;
        if (ModelCheck::isLoadable(path)) {
            if (LlamaHandles::Model model{llama_model_load_from_file(path.c_str(), parameters)})
                return model;
        }
    } catch (const std::exception&) {
        // Throws the sentence below instead: llama.cpp's own words are not fit for users.
    }
    throw AppError("Could not load the language model.");
}

/// How many threads compute. Two processors are left to the rest of the machine.
static int threadCount()
{
    return static_cast<int>(std::max(std::thread::hardware_concurrency(), 4U) - 2);
}

static LlamaHandles::Context createContext(llama_model& model)
{
    llama_context_params parameters = llama_context_default_params();
    parameters.n_ctx = ChatPrompt::contextTokens;
    parameters.n_batch = ChatPrompt::contextTokens;
    try {
        const AbortTrap trap;
        LlamaHandles::Context context{llama_init_from_model(&model, parameters)};
        // A model that only encodes has no memory. With one, llama.cpp would abort on a long
        // prompt.
        if (context && llama_get_memory(context.get()) != nullptr)
            return context;
    } catch (const std::exception&) {
        // llama.cpp's own words are not fit for users.
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
    std::unique_ptr<LoadedModel> loaded(new LoadedModel(std::move(model), std::move(context)));
    loaded->requireTokens();
    return loaded;
}

LoadedModel::LoadedModel(LlamaHandles::Model model, LlamaHandles::Context context)
    : m_model(std::move(model)),
      m_threads(threadCount()),
      m_context(std::move(context)),
      m_vocab(llama_model_get_vocab(m_model.get()))
{
    m_threads.attachTo(*m_context);
}

/// Throws AppError unless an empty prompt has tokens. A damaged vocabulary may be unable to express
/// anything, yet the model loads.
void LoadedModel::requireTokens() const
{
    try {
        if (!tokenize(ChatPrompt::text({}, {})).empty())
            return;
    } catch (const AppError&) {
        // Throws the sentence below instead.
    }
    throw AppError("Model not loaded.");
}

static std::vector<Token> tokensOf(std::string_view text, const llama_vocab* vocab)
{
    constexpr std::size_t spare = 16;
    std::vector<Token> tokens(text.size() + spare);
    const auto tokenizeInto = [&](std::vector<Token>& buffer) {
        return llama_tokenize(vocab, text.data(), static_cast<int>(text.size()), buffer.data(),
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

std::vector<Token> LoadedModel::tokenize(const std::string& text) const
{
    // The time grows with the square of the length if a text is full of markers, so a long one is
    // tokenised in parts. A megabyte never fits into the context: the caller then only needs the
    // number of tokens, and the parts give that closely enough.
    constexpr std::size_t longestWhole = 1 << 20;
    constexpr std::size_t part = 1 << 14;
    const std::size_t step = text.size() > longestWhole ? part : longestWhole;
    return trapped([&] {
        std::vector<Token> tokens;
        for (std::size_t at = 0; at < text.size(); at += step) {
            const std::vector<Token> more =
                tokensOf(std::string_view(text).substr(at, step), m_vocab);
            tokens.insert(tokens.end(), more.begin(), more.end());
        }
        return tokens;
    });
}

void LoadedModel::clear()
{
    llama_memory_clear(llama_get_memory(m_context.get()), true);
}

int LoadedModel::evaluate(std::span<Token> tokens, const CancelToken& token)
{
    if (tokens.size() > static_cast<std::size_t>(ChatPrompt::contextTokens))
        return EvaluationError::noRoom;
    const auto isCancelled = [](void* data) {
        return static_cast<const CancelToken*>(data)->isCancelled();
    };
    llama_set_abort_callback(m_context.get(), isCancelled, const_cast<CancelToken*>(&token));
    const auto count = static_cast<int>(tokens.size());
    int code = EvaluationError::failed;
    try {
        code = llama_decode(m_context.get(), llama_batch_get_one(tokens.data(), count));
    } catch (const std::exception&) {
        // There is no memory, or a graph cannot be built.
    }
    llama_set_abort_callback(m_context.get(), nullptr, nullptr);
    if (code == 0 && !hasUsableLogits())
        return EvaluationError::failed;
    return code;
}

/// Whether the sampler can use what was computed. Damaged weights lead to values that are not
/// numbers, and its sorting is undefined on those.
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
    return trapped([&] { return llama_sampler_sample(&sampler, m_context.get(), -1); });
}

bool LoadedModel::endsGeneration(Token token) const
{
    return llama_vocab_is_eog(m_vocab, token);
}

std::string LoadedModel::piece(Token token) const
{
    std::array<char, 256> buffer{};
    const int length = trapped([&] {
        return llama_token_to_piece(m_vocab, token, buffer.data(), static_cast<int>(buffer.size()),
                                    0, false);
    });
    const std::size_t kept = std::min(buffer.size(), static_cast<std::size_t>(std::max(length, 0)));
    return {buffer.data(), kept};
}
