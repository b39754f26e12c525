#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Writes small models that stand in for a real one: under llama.cpp they generate a fixed script,
/// token by token, whatever ChatML prompt they are given. Any thread may call every function.
namespace StandinModel {

/// What one generated token renders as: `bytes`, or nothing for a control token.
struct Piece
{
    enum class Kind { text, control };

    std::string bytes; // at least one; may be a part of a character. Unused in a control piece
    Kind kind = Kind::text;
};

enum class Ending {
    endOfGeneration, // the script is followed by the end-of-generation token
    never            // the last piece is followed by the first
};

/// The text pieces differ from each other. None is "\n", in which every prompt ends, and none
/// reads like a control token ("</s>", "[EOS]"), which llama.cpp would take it for.
struct Script
{
    std::vector<Piece> pieces; // with none, generation ends at once
    Ending ending = Ending::endOfGeneration;
};

/// `text` cut into pieces fit for a script, each of about a word and more where it takes more to
/// differ from those before; whole characters if `text` is UTF-8. Linear in `text`. A text that
/// cannot be cut so, such as "\n", comes back as one unfit piece. Throws std::bad_alloc only.
std::vector<Piece> split(std::string_view text);

/// Writes the model. The file gets at least `paddedTo` bytes, by zeros at its end that take no
/// space on disk where the file system can do without. Throws std::invalid_argument for a script
/// against the rules above and std::runtime_error when the file cannot be written.
void write(const Script& script, const std::filesystem::path& path, std::uintmax_t paddedTo = 0);

} // namespace StandinModel
