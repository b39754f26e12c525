#pragma once

#include <string>
#include <string_view>

/// `text` with pieces of it replaced, in one pass. Each piece begins with `beginning`. `replace`
/// gets the rest of the text from there and the result so far. It appends what stands for the piece
/// and returns the piece's length in bytes, at least 1.
template <typename Replace>
std::string replacedPieces(std::string_view text, std::string_view beginning, Replace replace)
{
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const std::size_t start = text.find(beginning);
        result.append(text.substr(0, start));
        if (start == std::string_view::npos)
            return result;
        text.remove_prefix(start);
        text.remove_prefix(replace(text, result));
    }
}
