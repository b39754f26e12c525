#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

/// The fonts of a document, of which only the code page matters.
class RtfFonts
{
public:
    /// Goes on with the description of the font `number`.
    void describe(int number);

    /// Of the font that is being described.
    void setCharacterSet(int characterSet);
    void setCodePage(int codePage);
    void appendName(std::string_view name);

    /// The code page of the text in the font `number`, or 0 for the document's.
    int codePage(int number) const;

private:
    struct Font
    {
        int codePage = 0;
        bool hasSymbols = false;
        std::string name; // its beginning
    };

    std::unordered_map<int, Font> m_fonts;
    Font* m_described = nullptr;
};
