#include "RtfFonts.h"

#include "RtfCodePage.h"
#include "RtfSymbols.h"

/// The largest number of a font. The format's numbers have 16 bits, and no real document has more
/// fonts.
static constexpr int maxNumber = 0xFFFF;

static constexpr int symbolCharacterSet = 2;

static constexpr std::size_t maxName = 32; // bytes

void RtfFonts::describe(int number)
{
    const bool isUsable = number >= 0 && number <= maxNumber;
    m_described = isUsable ? &m_fonts[number] : nullptr;
}

void RtfFonts::setCharacterSet(int characterSet)
{
    if (!m_described)
        return;
    m_described->codePage = RtfCodePage::ofCharacterSet(characterSet);
    m_described->hasSymbols = characterSet == symbolCharacterSet;
}

void RtfFonts::setCodePage(int codePage)
{
    if (m_described && RtfCodePage::isKnown(codePage))
        m_described->codePage = codePage;
}

void RtfFonts::appendName(std::string_view name)
{
    if (m_described)
        m_described->name += name.substr(0, maxName - m_described->name.size());
}

int RtfFonts::codePage(int number) const
{
    const auto found = m_fonts.find(number);
    if (found == m_fonts.end())
        return 0;
    const Font& font = found->second;
    return font.hasSymbols ? RtfSymbols::codePage(font.name) : font.codePage;
}
