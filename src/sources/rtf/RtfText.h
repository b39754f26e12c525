#pragma once

#include "RtfDecoder.h"

#include <string>
#include <string_view>

/// The plain text that grows while a document is read. Bytes are collected until something else
/// comes, because the bytes of one character may be written in several ways.
class RtfText
{
public:
    /// At least one byte, in `codePage`, one of RtfCodePage.
    void appendBytes(std::string_view bytes, int codePage);

    /// A UTF-16 code unit. A surrogate waits for its other half.
    void appendUnit(char16_t unit);

    void appendCharacter(char32_t character);

    /// Ends a table's row: the tab behind its last cell becomes a line feed.
    void endRow();

    /// Everything so far, valid UTF-8. The object is then empty.
    std::string take();

private:
    void flush();
    void write(char32_t character);

    std::string m_text;
    std::string m_bytes; // not decoded yet
    int m_codePage = 0;  // of m_bytes
    char16_t m_highSurrogate = 0;
    RtfDecoder m_decoder;
};
