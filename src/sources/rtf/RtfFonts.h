#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

/// The fonts of a document. Only their code pages matter.
class RtfFonts
{
public:
    /// From now on the font `number` is being described.
    void describe(int number);

    /// The next three are about the font that is being described.
    void setCharacterSet(int characterSet);
    void setCodePage(int codePage);
    void appendName(std::string_view name);

    /// The code page of text in the font `number`, 0 for the document's.
    int codePage(int number) const;

private:
    struct Font
    {
        int codePage = 0;
        bool hasSymbols = false;
        std::string name; // the beginning of it
    };

    std::unordered_map<int, Font> m_fonts;
    Font* m_described = nullptr;
};
