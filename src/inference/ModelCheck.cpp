#include "ModelCheck.h"

#include "Release.h"

#include <ggml.h>
#include <gguf.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string_view>

namespace {

/// The first bytes of a GGUF file.
struct Header
{
    std::array<char, 8> magicAndVersion;
    std::uint64_t tensors;
    std::uint64_t keys;
};

// Real models have about 30 keys, and the largest ones some 2000 tensors.
constexpr std::uint64_t mostEntries = 10'000;

// Numbers in a key or a value of one attention head. Real models have up to 576.
constexpr std::uint32_t longestHead = 1024;

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> choices)
{
    return std::find(choices.begin(), choices.end(), text) != choices.end();
}

/// Whether there are so few keys and tensors that reading the metadata ends soon: the time grows
/// with the squares of these numbers.
bool hasUsualCounts(const std::filesystem::path& path)
{
    Header header{};
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(&header), sizeof header))
        return false;
    return header.tensors <= mostEntries && header.keys <= mostEntries;
}

/// Whether the value of the key `name` is one of the texts `choices`, or there is no such key.
bool isAbsentOrOneOf(const gguf_context* metadata, const char* name,
                     std::initializer_list<std::string_view> choices)
{
    const std::int64_t key = gguf_find_key(metadata, name);
    if (key < 0)
        return true;
    return gguf_get_kv_type(metadata, key) == GGUF_TYPE_STRING &&
           isOneOf(gguf_get_val_str(metadata, key), choices);
}

bool isSafeKey(const gguf_context* metadata, std::int64_t key)
{
    const std::string_view name = gguf_get_key(metadata, key);
    const gguf_type type = gguf_get_kv_type(metadata, key);
    // A negative one would make the normalisation abort, on llama.cpp's worker threads.
    if (name.ends_with("epsilon") && type == GGUF_TYPE_FLOAT32) {
        const float epsilon = gguf_get_val_f32(metadata, key);
        return epsilon >= 0 && std::isfinite(epsilon);
    }
    // These set the size of the context before llama.cpp compares them with the tensors.
    if (name.ends_with(".key_length") || name.ends_with(".value_length"))
        return type != GGUF_TYPE_UINT32 || gguf_get_val_u32(metadata, key) <= longestHead;
    // Only this file is checked, so a model in several files is refused.
    if (name == "split.count")
        return type == GGUF_TYPE_UINT16 && gguf_get_val_u16(metadata, key) <= 1;
    return true;
}

/// Whether llama.cpp can compute with the tensor's type of numbers. It does not check this: it
/// aborts or jumps to a function that does not exist.
bool isSafeTensor(const ggml_tensor* tensor)
{
    switch (tensor->type) {
    case GGML_TYPE_F32:
        return true;
    // llama.cpp only stores these, or uses them only between two steps of a multiplication.
    case GGML_TYPE_I8:
    case GGML_TYPE_I16:
    case GGML_TYPE_I32:
    case GGML_TYPE_I64:
    case GGML_TYPE_F64:
    case GGML_TYPE_Q8_1:
    case GGML_TYPE_Q8_K:
        return false;
    default:
        // Vectors are added and multiplied element by element, which is not possible with all
        // types.
        return ggml_n_dims(tensor) > 1;
    }
}

} // namespace

bool ModelCheck::isLoadable(const std::filesystem::path& path)
{
    // Opening a pipe or a device may block for ever.
    if (!std::filesystem::is_regular_file(path) || !hasUsualCounts(path))
        return false;
    ggml_context* created = nullptr;
    const std::unique_ptr<gguf_context, Release<gguf_free>> metadata(
        gguf_init_from_file(path.c_str(), {true, &created}));
    const std::unique_ptr<ggml_context, Release<ggml_free>> tensors(created);
    if (!metadata || !tensors)
        return false;
    // Some other architectures abort in the evaluation, on values that they have not checked. Some
    // other tokenizers never return from a damaged vocabulary.
    if (!isAbsentOrOneOf(metadata.get(), "general.architecture", {"llama", "qwen2", "qwen3"}) ||
        !isAbsentOrOneOf(metadata.get(), "tokenizer.ggml.model",
                         {"gpt2", "llama", "none", "no_vocab"}))
        return false;
    for (std::int64_t key = 0; key < gguf_get_n_kv(metadata.get()); ++key) {
        if (!isSafeKey(metadata.get(), key))
            return false;
    }
    ggml_tensor* tensor = ggml_get_first_tensor(tensors.get());
    while (tensor != nullptr && isSafeTensor(tensor))
        tensor = ggml_get_next_tensor(tensors.get(), tensor);
    return tensor == nullptr;
}
