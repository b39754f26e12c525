#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct gguf_context;

/// What llama.cpp expects in a file of the architecture "qwen2".
namespace Qwen2Layout {

/// The sizes of a model; the defaults are those of Qwen2.5-1.5B. `width` is a multiple of `heads`
/// and the quotient even; `heads` is a multiple of `keyValueHeads`.
struct Shape
{
    int layers = 28;
    int width = 1536;
    int feedForward = 8960;
    int heads = 12;
    int keyValueHeads = 2;
};

struct Tensor
{
    enum class Kind { norm, bias, matrix };

    std::string name;
    Kind kind;
    std::int64_t columns;
    std::int64_t rows; // 1 unless a matrix
};

/// Sets the architecture and its hyperparameters.
void setHyperparameters(gguf_context* metadata, const Shape& shape);

/// The tensors of layer number `layer`. A file may leave the biases out.
std::vector<Tensor> layerTensors(const Shape& shape, int layer);

} // namespace Qwen2Layout
