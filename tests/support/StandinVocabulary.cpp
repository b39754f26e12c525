#include "StandinVocabulary.h"

#include <gguf.h>

#include <cstdint>

/// Bytes that print as Latin-1 stand for themselves, the others for the characters from U+0100 on,
/// in order.
std::string StandinVocabulary::spelled(std::string_view bytes)
{
    const auto prints = [](unsigned byte) {
        return (byte > 0x20 && byte < 0x7F) || (byte > 0xA0 && byte != 0xAD);
    };
    std::string text;
    for (const char character : bytes) {
        const unsigned byte = static_cast<unsigned char>(character);
        unsigned codePoint = byte;
        if (!prints(byte)) {
            codePoint = 0x100;
            for (unsigned other = 0; other < byte; ++other)
                codePoint += prints(other) ? 0 : 1;
        }
        if (codePoint < 0x80) {
            text += static_cast<char>(codePoint);
        } else {
            text += static_cast<char>(0xC0 | (codePoint >> 6));
            text += static_cast<char>(0x80 | (codePoint & 0x3F));
        }
    }
    return text;
}

std::vector<StandinVocabulary::Token> StandinVocabulary::base()
{
    std::vector<Token> tokens;
    for (std::size_t byte = 0; byte < byteTokens; ++byte)
        tokens.push_back({spelled(std::string(1, static_cast<char>(byte)))});
    for (const char* name : {"<|endoftext|>", "<|im_start|>", "<|im_end|>"})
        tokens.push_back({name, LLAMA_TOKEN_TYPE_CONTROL});
    return tokens;
}

void StandinVocabulary::set(gguf_context* metadata, const std::vector<Token>& tokens)
{
    std::vector<const char*> texts;
    std::vector<std::int32_t> types;
    for (const Token& token : tokens) {
        texts.push_back(token.text.c_str());
        types.push_back(token.type);
    }
    gguf_set_val_str(metadata, "tokenizer.ggml.model", "gpt2");
    gguf_set_val_str(metadata, "tokenizer.ggml.pre", "qwen2");
    gguf_set_arr_str(metadata, "tokenizer.ggml.tokens", texts.data(), texts.size());
    gguf_set_arr_data(metadata, "tokenizer.ggml.token_type", GGUF_TYPE_INT32, types.data(),
                      types.size());
    // Without merges a prompt becomes byte tokens, never a piece of the script.
    gguf_set_arr_str(metadata, "tokenizer.ggml.merges", nullptr, 0);
    gguf_set_val_u32(metadata, "tokenizer.ggml.bos_token_id", byteTokens);
    gguf_set_val_u32(metadata, "tokenizer.ggml.eos_token_id", endToken);
    gguf_set_val_bool(metadata, "tokenizer.ggml.add_bos_token", false);
}
