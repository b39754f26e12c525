#include "RtfText.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <utility>

void RtfText::appendBytes(std::string_view bytes, int codePage)
{
    if (codePage != m_codePage || m_highSurrogate != 0)
        flush();
    m_codePage = codePage;
    m_bytes += bytes;
}

void RtfText::appendUnit(char16_t unit)
{
    if (U16_IS_TRAIL(unit) && m_highSurrogate != 0) {
        write(static_cast<char32_t>(U16_GET_SUPPLEMENTARY(m_highSurrogate, unit)));
        m_highSurrogate = 0;
        return;
    }
    flush();
    if (U16_IS_LEAD(unit))
        m_highSurrogate = unit;
    else
        write(unit);
}

void RtfText::appendCharacter(char32_t character)
{
    flush();
    write(character);
}

void RtfText::endRow()
{
    flush();
    if (m_text.ends_with('\t'))
        m_text.pop_back();
    m_text += '\n';
}

std::string RtfText::take()
{
    flush();
    return std::exchange(m_text, {});
}

/// Writes the bytes or the half of a character that are waiting. Requires: not both are waiting.
void RtfText::flush()
{
    if (m_highSurrogate != 0)
        write(std::exchange(m_highSurrogate, u'\0'));
    if (m_bytes.empty())
        return;
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    if (m_codePage > 0 && std::all_of(m_bytes.begin(), m_bytes.end(), isAscii)) {
        m_text += m_bytes; // they are ASCII in every code page that has letters
    } else {
        const std::u16string_view units = m_decoder.decoded(m_bytes, m_codePage);
        for (std::size_t i = 0; i < units.size();) {
            UChar32 character = 0;
            U16_NEXT(units.data(), i, units.size(), character);
            write(static_cast<char32_t>(character));
        }
    }
    m_bytes.clear();
}

/// Writes the character; half a character becomes U+FFFD.
void RtfText::write(char32_t character)
{
    if (character > 0x10FFFF || U_IS_SURROGATE(character))
        character = U'\uFFFD';
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    m_text.append(bytes, length);
}
