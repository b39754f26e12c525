#include "WhiteSpace.h"

#include "ByteScan.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace WhiteSpace {

/// `text` without the characters at both ends for which `isTrimmed` is true.
static std::string_view trimmedOf(std::string_view text, UBool (*isTrimmed)(UChar32))
{
    const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end) {
        std::size_t next = begin;
        UChar32 character = 0;
        U8_NEXT(data, next, end, character);
        if (!isTrimmed(character))
            break;
        begin = next;
    }
    while (end > begin) {
        std::size_t last = end - 1;
        while (last > begin && U8_IS_TRAIL(data[last]))
            --last;
        std::size_t next = last;
        UChar32 character = 0;
        U8_NEXT(data, next, end, character);
        if (!isTrimmed(character))
            break;
        end = last;
    }
    return text.substr(begin, end - begin);
}

std::string_view trimmed(std::string_view text)
{
    return trimmedOf(text, u_isUWhiteSpace);
}

std::string_view trimmedBlanks(std::string_view text)
{
    return trimmedOf(text, u_isblank);
}

/// The position of the first byte from `from` on that normalising could change, else the end. Such
/// a byte is a carriage return, the first byte of a no-break space, or a space or line feed that
/// follows another of its kind. Requires: from >= 1.
static std::size_t findChange(std::string_view text, std::size_t from)
{
    using namespace ByteScan;
    return find<1>(text, from, [](const char* bytes) {
        const Word word = load(bytes);
        const Word repeats = word ^ load(bytes - 1); // zero where a byte equals the one before
        return zeroBytes(word ^ repeated('\r')) | zeroBytes(word ^ repeated(0xC2)) |
               zeroBytes(repeats | (word ^ repeated(' '))) |
               zeroBytes(repeats | (word ^ repeated('\n')));
    });
}

/// Appends `byte` at `out`, unless it would be a second space or a third line feed in a row.
/// `begin` is where the output starts. Returns its new end.
static char* appendCollapsed(char* begin, char* out, char byte)
{
    if (byte == ' ' && out > begin && out[-1] == ' ')
        return out;
    if (byte == '\n' && out - begin >= 2 && out[-1] == '\n' && out[-2] == '\n')
        return out;
    *out = byte;
    return out + 1;
}

std::string normalised(std::string_view text)
{
    // Trimming first gives the same result as trimming last: the other steps only replace white
    // space by white space.
    text = trimmed(text);
    std::string result(text.size(), '\0');
    char* const begin = result.data();
    char* out = begin;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::string_view pair = text.substr(i, 2);
        if (pair == "\xC2\xA0") {
            out = appendCollapsed(begin, out, ' ');
            i += 2;
            // findChange would compare the next byte with 0xA0 instead of the space written for it,
            // so it must not run here.
            continue;
        }
        const bool isLineBreak = pair == "\r\n";
        out = appendCollapsed(begin, out, isLineBreak ? '\n' : text[i]);
        i += isLineBreak ? 2 : 1;
        const std::size_t end = findChange(text, i);
        std::memcpy(out, text.data() + i, end - i);
        out += end - i;
        i = end;
    }
    result.resize(static_cast<std::size_t>(out - begin));
    return result;
}

} // namespace WhiteSpace
