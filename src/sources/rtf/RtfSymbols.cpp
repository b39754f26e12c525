#include "RtfSymbols.h"

#include "RtfCodePage.h"

namespace RtfSymbols {

/// Stands for what the Symbol font or Unicode does not have.
static constexpr char16_t unknown = u'·';

/// What the Symbol font shows for the bytes from the space (0x20) on.
static constexpr std::u16string_view lowHalf = u" !∀#∃%&∋()∗+,−./0123456789:;<=>?"
                                               u"≅ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ[∴]⊥_"
                                               u"‾αβχδεφγηιϕκλμνοπθρστυϖωξψζ{|}∼";

/// What it shows for the bytes from 0xA0 on.
static constexpr std::u16string_view highHalf = u"€ϒ′≤⁄∞ƒ♣♦♥♠↔←↑→↓°±″≥×∝∂•÷≠≡≈…|—↵"
                                                u"ℵℑℜ℘⊗⊕∅∩∪⊃⊇⊄⊂⊆∈∉∠∇®©™∏√⋅¬∧∨⇔⇐⇑⇒⇓"
                                                u"◊〈®©™∑⎛⎜⎝⎡⎢⎣⎧⎨⎩⎪·〉∫⌠⎮⌡⎞⎟⎠⎤⎥⎦⎫⎬⎭";

static_assert(lowHalf.size() == 0x7F - 0x20 && highHalf.size() == 0xFF - 0xA0);

int codePage(std::string_view name)
{
    using namespace std::string_view_literals;
    if (name.starts_with("Symbol"))
        return RtfCodePage::symbolFont;
    for (const auto beginning : {"Wingdings"sv, "Webdings"sv, "ZapfDingbats"sv, "Zapf Dingbats"sv,
                                 "Monotype Sorts"sv, "OpenSymbol"sv, "StarSymbol"sv}) {
        if (name.starts_with(beginning))
            return RtfCodePage::dingbats;
    }
    return 0;
}

char16_t character(char16_t code, int codePage)
{
    const bool isByte = code <= 0xFF || (code & 0xFF00) == 0xF000;
    const auto byte = static_cast<unsigned char>(code);
    if (code <= ' ' || (isByte && byte == ' '))
        return byte;
    if (codePage == RtfCodePage::dingbats)
        return u'•';
    if (!isByte)
        return code;
    if (byte >= 0x20 && byte < 0x20 + lowHalf.size())
        return lowHalf[byte - 0x20u];
    if (byte >= 0xA0 && byte < 0xA0 + highHalf.size())
        return highHalf[byte - 0xA0u];
    return unknown;
}

} // namespace RtfSymbols
