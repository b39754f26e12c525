#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The prompt in the ChatML form that the model was trained on, and its budget of tokens.
namespace ChatPrompt {

using Token = std::int32_t; // llama.cpp's llama_token
using Tokenize = std::function<std::vector<Token>(const std::string& text)>;

/// What the engine's context holds: prompt and answer together.
constexpr int contextTokens = 4096;

/// `system` and `user` with the ChatML markers, open for the assistant's answer.
std::string text(std::string_view system, std::string_view user);

/// The tokens of the prompt. While they leave too little room for `maxTokens` more, the user text
/// is cut at its end in proportion; one of under 201 characters is left as it is, so the result may
/// still be too long.
std::vector<Token> fitted(std::string_view system, std::string_view user, int maxTokens,
                          const Tokenize& tokenize);

} // namespace ChatPrompt
