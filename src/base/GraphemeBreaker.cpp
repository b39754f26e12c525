#include "GraphemeBreaker.h"

#include <unicode/uscript.h>

static bool isControl(UGraphemeClusterBreak property)
{
    return property == U_GCB_CONTROL || property == U_GCB_CR || property == U_GCB_LF;
}

/// Whether `character` has the Indic syllabic category `category` and belongs to a script whose
/// conjuncts are not broken. Stands in for the property Indic_Conjunct_Break, which ICU offers only
/// from version 76 on.
static bool isInConjunct(UChar32 character, UIndicSyllabicCategory category)
{
    if (u_getIntPropertyValue(character, UCHAR_INDIC_SYLLABIC_CATEGORY) != category)
        return false;
    switch (u_getIntPropertyValue(character, UCHAR_SCRIPT)) {
    case USCRIPT_BENGALI:
    case USCRIPT_DEVANAGARI:
    case USCRIPT_GUJARATI:
    case USCRIPT_MALAYALAM:
    case USCRIPT_ORIYA:
    case USCRIPT_TELUGU:
        return true;
    default:
        return false;
    }
}

/// Rules GB6 to GB8: Hangul syllables are not broken.
static bool joinsHangul(UGraphemeClusterBreak previous, UGraphemeClusterBreak next)
{
    switch (previous) {
    case U_GCB_L:
        return next == U_GCB_L || next == U_GCB_V || next == U_GCB_LV || next == U_GCB_LVT;
    case U_GCB_LV:
    case U_GCB_V:
        return next == U_GCB_V || next == U_GCB_T;
    case U_GCB_LVT:
    case U_GCB_T:
        return next == U_GCB_T;
    default:
        return false;
    }
}

bool GraphemeBreaker::joins(UGraphemeClusterBreak next, UChar32 character) const
{
    if (m_previous == U_GCB_OTHER && next == U_GCB_OTHER)
        return false; // GB999, first because it is by far the most frequent
    if (m_previous == U_GCB_CR && next == U_GCB_LF)
        return true; // GB3
    if (isControl(m_previous) || isControl(next))
        return false; // GB4, GB5
    if (next == U_GCB_EXTEND || next == U_GCB_ZWJ || next == U_GCB_SPACING_MARK)
        return true; // GB9, GB9a
    if (m_previous == U_GCB_PREPEND)
        return true; // GB9b
    if (next == U_GCB_OTHER && (m_previous == U_GCB_EXTEND || m_previous == U_GCB_ZWJ))
        return joinsAfterExtension(character);
    if (next == U_GCB_REGIONAL_INDICATOR)
        return m_previous == U_GCB_REGIONAL_INDICATOR && m_oddIndicators; // GB12, GB13
    return joinsHangul(m_previous, next);
}

bool GraphemeBreaker::joinsAfterExtension(UChar32 character) const
{
    if (m_hasLinker && !m_breaksChain && isInConjunct(m_base, U_INSC_CONSONANT) &&
        isInConjunct(character, U_INSC_CONSONANT))
        return true; // GB9c
    return m_previous == U_GCB_ZWJ && m_joiners == 1 &&
           u_hasBinaryProperty(m_base, UCHAR_EXTENDED_PICTOGRAPHIC) &&
           u_hasBinaryProperty(character, UCHAR_EXTENDED_PICTOGRAPHIC); // GB11
}

void GraphemeBreaker::follow(UGraphemeClusterBreak property, UChar32 character)
{
    m_previous = property;
    if (property == U_GCB_ZWJ) {
        ++m_joiners;
    } else if (property != U_GCB_EXTEND) {
        m_base = character;
        m_joiners = 0;
        m_hasLinker = false;
        m_breaksChain = false;
    } else if (u_getCombiningClass(character) == 0) {
        m_breaksChain = true;
    } else if (!m_hasLinker) {
        m_hasLinker = isInConjunct(character, U_INSC_VIRAMA);
    }
}

bool GraphemeBreaker::beginsCluster(UChar32 character)
{
    const auto next = static_cast<UGraphemeClusterBreak>(
        u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK));
    const bool joined = joins(next, character);
    m_oddIndicators = next == U_GCB_REGIONAL_INDICATOR && !(joined && m_oddIndicators);
    follow(next, character);
    return !joined;
}

void GraphemeBreaker::skipAscii(char last)
{
    follow(last < 0x20 || last == 0x7F ? U_GCB_CONTROL : U_GCB_OTHER, last);
    m_oddIndicators = false;
}
