#pragma once

#include <filesystem>
#include <map>
#include <string_view>

/// Writes small models that answer by a simple rule, so that a test can tell what llama.cpp must
/// make of them. Any ChatML prompt will do. Throw std::runtime_error when the file cannot be
/// written.
namespace StandinVariants {

/// A model whose next token, whatever came before, is each of the ASCII characters in `logits` with
/// that logit (-10 to 10), and anything else, the end included, as good as never.
void writeDice(const std::map<char, float>& logits, const std::filesystem::path& path);

/// A model that answers with the one of `letters` (at most 16 ASCII characters) that stands most
/// often in all it has been given since its memory was cleared, and ends.
void writeTally(std::string_view letters, const std::filesystem::path& path);

} // namespace StandinVariants
