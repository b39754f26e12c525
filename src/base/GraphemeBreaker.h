#pragma once

#include <unicode/uchar.h>

#include <cstdint>

/// Decides, code point after code point, where extended grapheme clusters begin (Unicode Standard
/// Annex #29, rules GB1 to GB13 with GB9c), with the character properties of ICU. ICU's own break
/// iterator gives the same boundaries but reaches only 75 MB/s on Cyrillic, too slow for three
/// passes.
class GraphemeBreaker
{
public:
    /// Whether a cluster begins at `character`, which follows everything given before.
    bool beginsCluster(UChar32 character);

    /// Takes note that ASCII text without carriage returns, ending in `last`, follows; cheaper than
    /// giving each of its characters.
    void skipAscii(char last);

private:
    bool joins(UGraphemeClusterBreak next, UChar32 character) const;
    bool joinsAfterExtension(UChar32 character) const;
    void follow(UGraphemeClusterBreak property, UChar32 character);

    UGraphemeClusterBreak m_previous = U_GCB_CONTROL; // the start of text breaks like a control
    UChar32 m_base = 0;           // the last character that was neither Extend nor ZWJ
    bool m_oddIndicators = false; // an odd number of regional indicators ends here

    // Of the characters since m_base:
    bool m_hasLinker = false;   // one joins Indic consonants
    bool m_breaksChain = false; // one keeps a linker from doing so
    std::int64_t m_joiners = 0; // zero width joiners
};
