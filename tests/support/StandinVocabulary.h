#pragma once

#include <llama.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct gguf_context;

/// The tokens of the models that stand in for a real one: a byte each, so that every prompt can be
/// told, and the markers of ChatML.
namespace StandinVocabulary {

struct Token
{
    std::string text; // spelled
    llama_token_type type = LLAMA_TOKEN_TYPE_NORMAL;
};

constexpr std::size_t byteTokens = 256;            // the first ones, in order
constexpr std::size_t baseTokens = byteTokens + 3; // with the markers
constexpr std::size_t endToken = baseTokens - 1;   // ends the generation

/// `bytes` in the alphabet of byte-level vocabularies.
std::string spelled(std::string_view bytes);

/// The tokens that every model has, before those of its own.
std::vector<Token> base();

/// Writes the vocabulary, which begins with base(), into the model's file.
void set(gguf_context* metadata, const std::vector<Token>& tokens);

} // namespace StandinVocabulary
