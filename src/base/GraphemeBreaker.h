#pragma once

#include <unicode/uchar.h>

#include <cstdint>

/// Finds the beginnings of extended grapheme clusters, one code point after another (Unicode
/// Standard Annex #29, rules GB1 to GB13 with GB9c). Uses the character properties of ICU. ICU's
/// own break iterator gives the same boundaries but reaches only 75 MB/s on Cyrillic, too slow for
/// three passes.
class GraphemeBreaker
{
public:
    /// Whether a cluster begins at `character`, the next one of the text. Call it for each in turn.
    bool beginsCluster(UChar32 character);

    /// Skips ASCII text without carriage returns that ends in `last`; a cluster begins at each of
    /// its characters. Cheaper than giving them one by one. Requires: an ASCII character that is no
    /// carriage return came before.
    void skipAscii(char last);

private:
    bool joins(UGraphemeClusterBreak next, UChar32 character) const;
    bool joinsAfterExtension(UChar32 character) const;
    void follow(UGraphemeClusterBreak property, UChar32 character);

    UGraphemeClusterBreak m_previous = U_GCB_CONTROL; // a cluster begins at the text's start
    UChar32 m_base = 0;           // the last character that was neither Extend nor ZWJ
    bool m_oddIndicators = false; // an odd number of regional indicators ends here

    // About the characters after m_base:
    bool m_hasLinker = false;   // one of them joins Indic consonants
    bool m_breaksChain = false; // one of them prevents that joining
    std::int64_t m_joiners = 0; // how many are zero width joiners
};
