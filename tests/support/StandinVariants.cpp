#include "StandinVariants.h"

#include "GgufWriter.h"
#include "Qwen2Layout.h"
#include "StandinVocabulary.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>

namespace {

constexpr int width = 64;

/// The entries of a matrix that are not zero.
using Entries = std::map<std::pair<std::int64_t, std::size_t>, float>; // of (row, column)

struct Weights
{
    Entries embedding; // a row for each token
    Entries values;    // of the attention, which weighs all tokens alike
    Entries attention; // its output
    Entries output;    // a row for each token
};

std::int64_t tokenOf(char character)
{
    return static_cast<unsigned char>(character);
}

GgufWriter::FillRow filledWith(const Entries& entries)
{
    return [entries](std::int64_t index, std::span<std::byte> row) {
        for (const auto& [place, value] : entries) {
            if (place.first == index)
                std::memcpy(&row[place.second * sizeof value], &value, sizeof value);
        }
    };
}

/// A model of one layer that only adds to each token the mean of what it has been given.
void write(const Weights& weights, const std::filesystem::path& path)
{
    const Qwen2Layout::Shape shape{1, width, 32, 1, 1};
    constexpr std::int64_t tokens = StandinVocabulary::baseTokens;
    GgufWriter writer;
    Qwen2Layout::setHyperparameters(writer.metadata(), shape);
    StandinVocabulary::set(writer.metadata(), StandinVocabulary::base());
    const auto add = [&](const std::string& name, std::int64_t columns, std::int64_t rows,
                         const Entries& entries) {
        writer.addTensor(name, GGML_TYPE_F32, columns, rows, filledWith(entries));
    };
    add("token_embd.weight", width, tokens, weights.embedding);
    add("output.weight", width, tokens, weights.output);
    writer.addConstant("output_norm.weight", width, 1);
    for (const Qwen2Layout::Tensor& tensor : Qwen2Layout::layerTensors(shape, 0)) {
        if (tensor.kind == Qwen2Layout::Tensor::Kind::norm)
            writer.addConstant(tensor.name, tensor.columns, 1);
        else if (tensor.name == "blk.0.attn_v.weight")
            add(tensor.name, tensor.columns, tensor.rows, weights.values);
        else if (tensor.name == "blk.0.attn_output.weight")
            add(tensor.name, tensor.columns, tensor.rows, weights.attention);
        else if (tensor.kind == Qwen2Layout::Tensor::Kind::matrix)
            add(tensor.name, tensor.columns, tensor.rows, {});
    }
    writer.write(path);
}

} // namespace

void StandinVariants::writeDice(const std::map<char, float>& logits,
                                const std::filesystem::path& path)
{
    // What is no choice has a logit of zero.
    constexpr float lead = 60;
    // Every token has the same mark, which is as long as this once it is normalised.
    const float mark = std::sqrt(static_cast<float>(width));
    Weights weights;
    for (std::int64_t token = 0; token < std::int64_t{StandinVocabulary::baseTokens}; ++token)
        weights.embedding[{token, 0}] = 1;
    for (const auto& [character, logit] : logits)
        weights.output[{tokenOf(character), 0}] = (lead + logit) / mark;
    write(weights, path);
}

void StandinVariants::writeTally(std::string_view letters, const std::filesystem::path& path)
{
    // Each letter has a column that marks it and another in which the attention counts it. That a
    // letter has just been said stands in a column of its own.
    constexpr std::size_t counts = 16;
    constexpr std::size_t said = 32;
    Weights weights;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const std::int64_t token = tokenOf(letters[i]);
        weights.embedding[{token, i}] = 1;
        weights.embedding[{token, said}] = 1;
        weights.values[{static_cast<std::int64_t>(i), i}] = 1;
        weights.attention[{static_cast<std::int64_t>(counts + i), i}] = 1;
        weights.output[{token, counts + i}] = 100;
    }
    weights.output[{std::int64_t{StandinVocabulary::endToken}, said}] = 10000;
    write(weights, path);
}
