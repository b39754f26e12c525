#include "ChatPrompt.h"

#include "Characters.h"

#include <cassert>

namespace ChatPrompt {

constexpr int spareTokens = 16;
constexpr std::size_t shortestCut = 201; // characters
// Cuts a little more than the average length of a token suggests, because the text that is kept may
// have more tokens than the average.
constexpr double cutFactor = 0.92;

std::string text(std::string_view system, std::string_view user)
{
    std::string prompt = "<|im_start|>system\n";
    prompt += system;
    prompt += "<|im_end|>\n<|im_start|>user\n";
    prompt += user;
    prompt += "<|im_end|>\n<|im_start|>assistant\n";
    return prompt;
}

std::vector<Token> fitted(std::string_view system, std::string_view user, int maxTokens,
                          const Tokenize& tokenize)
{
    const int limit = contextTokens - maxTokens - spareTokens;
    assert(limit >= 0);
    std::vector<Token> tokens = tokenize(text(system, user));
    while (static_cast<std::ptrdiff_t>(tokens.size()) > limit) {
        const std::size_t characters = Characters::count(user);
        if (characters < shortestCut)
            break;
        const double share = static_cast<double>(limit) / static_cast<double>(tokens.size());
        const auto kept =
            static_cast<std::size_t>(static_cast<double>(characters) * share * cutFactor);
        user = user.substr(0, Characters::prefix(user, kept).bytes);
        tokens = tokenize(text(system, user));
    }
    return tokens;
}

} // namespace ChatPrompt
