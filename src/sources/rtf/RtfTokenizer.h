#pragma once

#include <optional>
#include <string_view>

/// Cuts a Rich Text Format document into its tokens, in one pass and without copying. Binary data
/// is skipped. Line ends and NUL bytes have no meaning in the format and are left out.
class RtfTokenizer
{
public:
    enum class Kind {
        end,
        open,   // {
        close,  // }
        word,   // \name, perhaps with a number
        symbol, // \ and one character that is no letter
        bytes,  // text: bytes as they are, or one written as \'hh
    };

    struct Token
    {
        Kind kind = Kind::end;
        std::string_view text = {};        // a word's name, a symbol's character, or the bytes
        std::optional<int> parameter = {}; // a word's number, limited to +-maxParameter
    };

    static constexpr int maxParameter = 1 << 30;

    /// Requires: `rtf` outlives the tokens, whose texts are views into it or into constants.
    explicit RtfTokenizer(std::string_view rtf) : m_rest(rtf) {}

    Token next();

private:
    Token control();
    Token word();
    Token escapedByte();
    std::optional<int> parameter();
    std::string_view take(std::size_t count);

    std::string_view m_rest;
};
