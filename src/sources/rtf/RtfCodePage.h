#pragma once

/// The numbers by which Rich Text Format names the encodings of its bytes.
namespace RtfCodePage {

constexpr int windowsLatin1 = 1252; // the encoding of a document that names none
constexpr int macintosh = 10000;
constexpr int johab = 1361;

/// These are not code pages, but are used like them, for fonts that show other characters than
/// those in the file.
constexpr int symbolFont = -1; // the Symbol font's Greek letters and mathematical signs
constexpr int dingbats = -2;   // fonts of ornaments; any of these becomes a bullet

/// Whether text in `codePage` can be decoded.
bool isKnown(int codePage);

/// ICU's name for `codePage`, null if ICU does not have it.
const char* converterName(int codePage);

/// The code page for the text of a font with this character set; 0 if that is the document's code
/// page.
int ofCharacterSet(int characterSet);

} // namespace RtfCodePage
