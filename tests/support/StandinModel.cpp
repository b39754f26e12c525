#include "StandinModel.h"

#include "ByteTrie.h"
#include "GgufWriter.h"
#include "Qwen2Layout.h"
#include "StandinVocabulary.h"

#include <llama.h>

#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <span>
#include <stdexcept>
#include <unordered_set>

// The model is a chain of states. Attention and feed-forward weights are zero, so what comes next
// depends on the last token alone: its embedding marks a state, and the output row of the token
// that follows answers to that mark. Tokens outside the script, hence every prompt, mark the state
// from which the script starts.

namespace {

constexpr std::size_t promptState = 0;
constexpr int headWidth = 64;

struct Token : StandinVocabulary::Token
{
    std::size_t state = promptState;      // where this token leads
    std::optional<std::size_t> follows{}; // the state this token is generated in, if any
};

/// Whether llama.cpp might find `piece` among the names it knows control tokens by.
bool readsLikeControlToken(std::string_view piece)
{
    const std::string_view name = piece.substr(piece.starts_with('_') ? 1 : 0);
    return name.size() > 1 && (name.front() == '<' || name.front() == '[') &&
           (name.back() == '>' || name.back() == ']' || name.back() == '[');
}

void check(const std::vector<StandinModel::Piece>& pieces)
{
    std::unordered_set<std::string_view> earlier;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::string& bytes = pieces[i].bytes;
        if (pieces[i].kind == StandinModel::Piece::Kind::control)
            continue;
        const auto fail = [i](const char* what) {
            throw std::invalid_argument("Piece " + std::to_string(i + 1) + " of the script " +
                                        what + ".");
        };
        if (bytes.empty())
            fail("is empty");
        if (bytes == "\n")
            fail("is a line feed alone");
        if (readsLikeControlToken(bytes))
            fail("reads like a control token");
        if (!earlier.insert(bytes).second)
            fail("repeats an earlier one");
    }
}

/// The vocabulary, with the chain that generates `script`.
std::vector<Token> chainedTokens(const StandinModel::Script& script)
{
    std::vector<Token> tokens;
    for (const StandinVocabulary::Token& token : StandinVocabulary::base())
        tokens.push_back({token});

    std::size_t state = promptState;
    for (std::size_t i = 0; i < script.pieces.size(); ++i) {
        const auto& [bytes, kind] = script.pieces[i];
        std::size_t token = tokens.size();
        if (kind == StandinModel::Piece::Kind::control)
            tokens.push_back({{"<|piece_" + std::to_string(i) + "|>", LLAMA_TOKEN_TYPE_CONTROL}});
        else if (bytes.size() == 1)
            token = static_cast<unsigned char>(bytes.front());
        else
            tokens.push_back({{StandinVocabulary::spelled(bytes)}});
        tokens[token].follows = state;
        ++state;
        if (script.ending == StandinModel::Ending::never && i + 1 == script.pieces.size())
            state = promptState;
        tokens[token].state = state;
    }
    if (script.ending == StandinModel::Ending::endOfGeneration || script.pieces.empty())
        tokens[StandinVocabulary::endToken].follows = state;
    return tokens;
}

/// The mark of a state: a one in two of the embedding's columns. One column a state would do as
/// well, but the file would grow with the square of the script.
class StateMarks
{
public:
    explicit StateMarks(std::size_t states)
        : m_side(static_cast<std::size_t>(std::ceil(std::sqrt(states))))
    {}

    std::size_t width() const { return 2 * m_side; }
    std::array<std::size_t, 2> columns(std::size_t state) const
    {
        return {state / m_side, m_side + state % m_side};
    }

private:
    std::size_t m_side;
};

void setHalves(std::span<std::byte> row, std::span<const std::size_t> columns, float value)
{
    const ggml_fp16_t half = ggml_fp32_to_fp16(value);
    for (const std::size_t column : columns)
        std::memcpy(&row[column * sizeof half], &half, sizeof half);
}

void addVocabularyTensors(GgufWriter& writer, const std::vector<Token>& tokens,
                          const StateMarks& marks, int width)
{
    const auto rows = static_cast<std::int64_t>(tokens.size());
    writer.addTensor("token_embd.weight", GGML_TYPE_F16, width, rows,
                     [&](std::int64_t index, std::span<std::byte> row) {
                         const Token& token = tokens[static_cast<std::size_t>(index)];
                         setHalves(row, marks.columns(token.state), 1);
                     });
    // A normalised mark has at least 5 in each of its columns, so the token that follows is at
    // least 160 ahead of those that answer to one column only: sampling has no choice.
    writer.addTensor("output.weight", GGML_TYPE_F16, width, rows,
                     [&](std::int64_t index, std::span<std::byte> row) {
                         const Token& token = tokens[static_cast<std::size_t>(index)];
                         if (token.follows)
                             setHalves(row, marks.columns(*token.follows), 32);
                     });
}

void addLayer(GgufWriter& writer, const Qwen2Layout::Shape& shape)
{
    for (const Qwen2Layout::Tensor& tensor : Qwen2Layout::layerTensors(shape, 0)) {
        if (tensor.kind == Qwen2Layout::Tensor::Kind::norm)
            writer.addConstant(tensor.name, tensor.columns, 1);
        else if (tensor.kind == Qwen2Layout::Tensor::Kind::matrix)
            writer.addTensor(tensor.name, GGML_TYPE_F16, tensor.columns, tensor.rows);
    }
}

/// Whether a piece may end at `end`: after a word or 16 bytes, and between characters.
bool mayCut(std::string_view text, std::size_t begin, std::size_t end)
{
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    if (end == text.size())
        return true;
    const char last = text[end - 1];
    const char next = text[end];
    if ((static_cast<unsigned char>(next) & 0xC0) == 0x80)
        return false;
    // After '<' and '[' as well, so that what reads like a control token is seldom in one piece.
    return (isSpace(next) && !isSpace(last)) || last == '<' || last == '[' || end - begin >= 16;
}

std::vector<StandinModel::Piece> piecesEndingAt(const std::vector<std::size_t>& ends,
                                                std::string_view text)
{
    std::vector<StandinModel::Piece> pieces;
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        pieces.push_back({std::string(text.substr(begin, end - begin))});
        begin = end;
    }
    return pieces;
}

} // namespace

std::vector<StandinModel::Piece> StandinModel::split(std::string_view text)
{
    ByteTrie taken;
    std::vector<std::size_t> ends;
    std::size_t begin = 0;
    ByteTrie::Node node = ByteTrie::root; // where text[begin, end) leads
    const auto isUsable = [&](std::size_t end) {
        const std::string_view piece = text.substr(begin, end - begin);
        return !taken.contains(node) && piece != "\n" && !readsLikeControlToken(piece);
    };
    for (std::size_t end = 1; end <= text.size(); ++end) {
        node = taken.next(node, text[end - 1]);
        if (mayCut(text, begin, end) && isUsable(end)) {
            taken.insert(node);
            ends.push_back(end);
            begin = end;
            node = ByteTrie::root;
        }
    }
    // A rest that is no piece by itself goes with the piece before it. If that makes an earlier
    // piece, with the one before as well, and so on: as pieces are all different, still linear.
    while (begin < text.size() && !isUsable(text.size()) && !ends.empty()) {
        ends.pop_back();
        begin = ends.empty() ? 0 : ends.back();
        node = ByteTrie::root;
        for (const char byte : text.substr(begin))
            node = taken.next(node, byte);
    }
    if (begin < text.size())
        ends.push_back(text.size());
    return piecesEndingAt(ends, text);
}

void StandinModel::write(const Script& script, const std::filesystem::path& path,
                         std::uintmax_t paddedTo)
{
    check(script.pieces);
    const std::vector<Token> tokens = chainedTokens(script);
    const StateMarks marks(script.pieces.size() + 1);
    const int heads = static_cast<int>((marks.width() + headWidth - 1) / headWidth);
    const Qwen2Layout::Shape shape{1, heads * headWidth, 32, heads, 1};

    GgufWriter writer;
    Qwen2Layout::setHyperparameters(writer.metadata(), shape);
    gguf_set_val_str(writer.metadata(), "general.name", "Pithwise stand-in");
    StandinVocabulary::set(writer.metadata(), {tokens.begin(), tokens.end()});
    addVocabularyTensors(writer, tokens, marks, shape.width);
    writer.addConstant("output_norm.weight", shape.width, 1);
    addLayer(writer, shape);
    writer.write(path, paddedTo);
}
