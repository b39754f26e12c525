#include "Qwen2Layout.h"

#include <gguf.h>

void Qwen2Layout::setHyperparameters(gguf_context* metadata, const Shape& shape)
{
    const auto setCount = [metadata](const char* key, int value) {
        gguf_set_val_u32(metadata, key, static_cast<std::uint32_t>(value));
    };
    gguf_set_val_str(metadata, "general.architecture", "qwen2");
    setCount("qwen2.block_count", shape.layers);
    setCount("qwen2.context_length", 32768);
    setCount("qwen2.embedding_length", shape.width);
    setCount("qwen2.feed_forward_length", shape.feedForward);
    setCount("qwen2.attention.head_count", shape.heads);
    setCount("qwen2.attention.head_count_kv", shape.keyValueHeads);
    gguf_set_val_f32(metadata, "qwen2.attention.layer_norm_rms_epsilon", 1e-6F);
    gguf_set_val_f32(metadata, "qwen2.rope.freq_base", 1e6F);
}

std::vector<Qwen2Layout::Tensor> Qwen2Layout::layerTensors(const Shape& shape, int layer)
{
    const std::string prefix = "blk." + std::to_string(layer) + ".";
    const std::int64_t width = shape.width;
    const std::int64_t feedForward = shape.feedForward;
    const std::int64_t keyValueWidth = width / shape.heads * shape.keyValueHeads;
    using enum Tensor::Kind;
    return {
        {prefix + "attn_norm.weight", norm, width, 1},
        {prefix + "attn_q.weight", matrix, width, width},
        {prefix + "attn_q.bias", bias, width, 1},
        {prefix + "attn_k.weight", matrix, width, keyValueWidth},
        {prefix + "attn_k.bias", bias, keyValueWidth, 1},
        {prefix + "attn_v.weight", matrix, width, keyValueWidth},
        {prefix + "attn_v.bias", bias, keyValueWidth, 1},
        {prefix + "attn_output.weight", matrix, width, width},
        {prefix + "ffn_norm.weight", norm, width, 1},
        {prefix + "ffn_gate.weight", matrix, width, feedForward},
        {prefix + "ffn_up.weight", matrix, width, feedForward},
        {prefix + "ffn_down.weight", matrix, feedForward, width},
    };
}
