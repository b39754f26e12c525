#pragma once

#include "RtfDecoder.h"

#include <string>
#include <string_view>

/// The plain text of a document, growing while that is read. Bytes are collected until something
/// else comes, because the bytes of one character may be written in several ways.
class RtfText
{
public:
    /// Appends bytes in `codePage`, one of RtfCodePage. Requires: `bytes` is not empty.
    void appendBytes(std::string_view bytes, int codePage);

    /// Appends a UTF-16 code unit. A high surrogate waits for its other half.
    void appendUnit(char16_t unit);

    void appendCharacter(char32_t character);

    /// Ends a table's row: the tab after its last cell becomes a line feed.
    void endRow();

    /// Returns everything so far as valid UTF-8, and leaves the object empty.
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
