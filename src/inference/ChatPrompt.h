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

/// How many tokens the engine's context holds, prompt and answer together.
constexpr int contextTokens = 4096;

/// `system` and `user` with the ChatML markers, up to where the assistant's answer begins.
std::string text(std::string_view system, std::string_view user);

/// The tokens of the prompt. While they leave too little room for an answer of `maxTokens` (0 to
/// 4080) tokens, `user` is cut at its end, in proportion. A user text of under 201 characters is
/// not cut, so the result may still be too long. Both texts are valid UTF-8.
std::vector<Token> fitted(std::string_view system, std::string_view user, int maxTokens,
                          const Tokenize& tokenize);

} // namespace ChatPrompt
