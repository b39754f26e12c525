#include "PlainTextItem.h"

#include <unicode/utf8.h>

namespace PlainTextItem {

/// `text` in Latin-1, nothing if it has other characters.
static std::optional<std::string> latin1(const std::string& text)
{
    const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        UChar32 character = 0;
        U8_NEXT(data, i, text.size(), character);
        if (character < 0 || character > 0xFF)
            return std::nullopt;
        result += static_cast<char>(character);
    }
    return result;
}

Pasteboard::Item of(std::string text)
{
    Pasteboard::Item item;
    std::optional<std::string> string = latin1(text);
    item.push_back({"UTF8_STRING", text, "UTF8_STRING 8"});
    item.push_back({"text/plain;charset=utf-8", text, "text/plain;charset=utf-8 8"});
    // Programs that ask for this name leave the form to the owner.
    item.push_back({"TEXT", std::move(text), "UTF8_STRING 8"});
    if (string)
        item.push_back({"STRING", *std::move(string), "STRING 8"});
    return item;
}

} // namespace PlainTextItem
