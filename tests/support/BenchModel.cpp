#include "BenchModel.h"

#include "GgufWriter.h"

#include <llama.h>

#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>

namespace {

using Kind = Qwen2Layout::Tensor::Kind;

// The vocabulary begins with '!' to '~'. Every embedding points the same way, more or less, and so
// does the state that the layers make of it: the tokens that sampling can reach are those with the
// longest embeddings. The layers add far less than `otherLevel` to it; the spread is so small that
// sampling varies.
constexpr std::int64_t printableTokens = '~' - '!' + 1;
constexpr float printableLevel = 1000;
constexpr float otherLevel = 500;
constexpr float embeddingSpread = 0.05F; // relative to the level
constexpr float printableLogit = 120;    // about; the other tokens have half of it

constexpr float weightSpread = 0.02F; // as in real models
constexpr std::int64_t distinctRows = 64;

/// Random rows in the format of a tensor.
class Rows
{
public:
    Rows(ggml_type type, std::int64_t columns, std::int64_t count, float mean, float spread)
        : m_count(count), m_rowBytes(ggml_row_size(type, columns))
    {
        std::minstd_rand generator;
        std::normal_distribution<float> distribution(mean, spread);
        std::vector<float> values(static_cast<std::size_t>(columns * count));
        for (float& value : values)
            value = distribution(generator);
        m_bytes.resize(m_rowBytes * static_cast<std::size_t>(count));
        ggml_quantize_chunk(type, values.data(), m_bytes.data(), 0, count, columns, nullptr);
    }

    /// Row number `index`; after the last comes the first again.
    void copy(std::int64_t index, std::span<std::byte> row) const
    {
        const auto from = static_cast<std::size_t>(index % m_count) * m_rowBytes;
        std::memcpy(row.data(), &m_bytes[from], m_rowBytes);
    }

private:
    std::int64_t m_count;
    std::size_t m_rowBytes;
    std::vector<std::byte> m_bytes;
};

void check(const Qwen2Layout::Shape& shape)
{
    const auto [layers, width, feedForward, heads, keyValueHeads] = shape;
    const bool positive =
        layers > 0 && width > 0 && feedForward > 0 && heads > 0 && keyValueHeads > 0;
    if (!positive || width % (2 * heads) != 0 || heads % keyValueHeads != 0)
        throw std::invalid_argument("The parts of the model's shape do not fit together.");
}

/// Copies the tokenizer of Qwen2 and whatever else its file has. Returns the number of tokens.
std::int64_t setTokenizer(gguf_context* metadata)
{
    const std::filesystem::path path =
        std::filesystem::path(PITHWISE_TOKENIZER_DIR) / "ggml-vocab-qwen2.gguf";
    GgufWriter::Metadata tokenizer;
    if (std::filesystem::exists(path))
        tokenizer.reset(gguf_init_from_file(path.c_str(), {true, nullptr}));
    const auto key = tokenizer ? gguf_find_key(tokenizer.get(), "tokenizer.ggml.tokens") : -1;
    if (key < 0)
        throw std::runtime_error("The tokenizer cannot be read from " + path.string() +
                                 ", a file of llama.cpp's source.");
    gguf_set_kv(metadata, tokenizer.get());
    return static_cast<std::int64_t>(gguf_get_arr_n(tokenizer.get(), key));
}

/// `type` where rows of `columns` numbers can have it.
ggml_type fitting(ggml_type type, std::int64_t columns)
{
    return columns % ggml_blck_size(type) == 0 ? type : GGML_TYPE_F16;
}

/// The type of a matrix in layer number `layer` under Q4_K_M, which spends more bits on two of the
/// matrices in the first and the last eighth of the layers and in every third between them.
ggml_type matrixType(const Qwen2Layout::Tensor& matrix, int layer, int layers)
{
    const int first = layers / 8;
    const bool chosenLayer = layer < first || layer >= 7 * layers / 8 || (layer - first) % 3 == 2;
    const bool chosenMatrix =
        matrix.name.ends_with("attn_v.weight") || matrix.name.ends_with("ffn_down.weight");
    const ggml_type type = chosenLayer && chosenMatrix ? GGML_TYPE_Q6_K : GGML_TYPE_Q4_K;
    return fitting(type, matrix.columns);
}

void addEmbeddings(GgufWriter& writer, std::int64_t width, std::int64_t tokens)
{
    const ggml_type type = fitting(GGML_TYPE_Q6_K, width);
    const auto rows = [&](std::int64_t count, float level) {
        return Rows(type, width, count, level, level * embeddingSpread);
    };
    writer.addTensor(
        "token_embd.weight", type, width, tokens,
        [printable = rows(printableTokens, printableLevel),
         other = rows(distinctRows, otherLevel)](std::int64_t index, std::span<std::byte> row) {
            (index < printableTokens ? printable : other).copy(index, row);
        });
}

void addLayers(GgufWriter& writer, const Qwen2Layout::Shape& shape)
{
    std::map<std::pair<ggml_type, std::int64_t>, std::shared_ptr<const Rows>> known;
    for (int layer = 0; layer < shape.layers; ++layer) {
        for (const auto& tensor : Qwen2Layout::layerTensors(shape, layer)) {
            if (tensor.kind == Kind::norm) {
                writer.addConstant(tensor.name, tensor.columns, 1);
                continue;
            }
            const ggml_type type =
                tensor.kind == Kind::bias ? GGML_TYPE_F32 : matrixType(tensor, layer, shape.layers);
            auto& rows = known[{type, tensor.columns}];
            if (!rows)
                rows =
                    std::make_shared<Rows>(type, tensor.columns, distinctRows, 0.0F, weightSpread);
            writer.addTensor(
                tensor.name, type, tensor.columns, tensor.rows,
                [rows](std::int64_t index, std::span<std::byte> row) { rows->copy(index, row); });
        }
    }
}

} // namespace

void BenchModel::write(const std::filesystem::path& path, const Shape& shape)
{
    check(shape);
    GgufWriter writer;
    const std::int64_t tokens = setTokenizer(writer.metadata());
    Qwen2Layout::setHyperparameters(writer.metadata(), shape);
    gguf_set_val_str(writer.metadata(), "general.name", "Pithwise benchmark");
    gguf_set_val_u32(writer.metadata(), "general.file_type", LLAMA_FTYPE_MOSTLY_Q4_K_M);
    gguf_set_val_u32(writer.metadata(), "general.quantization_version", GGML_QNT_VERSION);
    addEmbeddings(writer, shape.width, tokens);
    const auto width = static_cast<float>(shape.width);
    writer.addConstant("output_norm.weight", shape.width,
                       printableLogit / (printableLevel * width));
    addLayers(writer, shape);
    writer.write(path);
}
