#pragma once

/// The numbers by which Rich Text Format names the encodings of its bytes.
namespace RtfCodePage {

constexpr int windowsLatin1 = 1252; // what a document has that names none
constexpr int macintosh = 10000;
constexpr int johab = 1361;

/// Not code pages, but used like them: fonts that show other characters than those in the file.
constexpr int symbolFont = -1; // the Symbol font's Greek letters and mathematical signs
constexpr int dingbats = -2;   // fonts of ornaments, of which any becomes a bullet

/// Whether text in `codePage` can be decoded.
bool isKnown(int codePage);

/// ICU's name for `codePage`, or null where ICU does not have it.
const char* converterName(int codePage);

/// The code page that a font's character set means, or 0 for the document's.
int ofCharacterSet(int characterSet);

} // namespace RtfCodePage
