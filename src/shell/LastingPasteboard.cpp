#include "LastingPasteboard.h"

void LastingPasteboard::clear()
{
    m_text.reset();
    m_below->clear();
}

void LastingPasteboard::writeText(std::string text)
{
    m_text = text;
    m_below->writeText(std::move(text));
}

std::optional<std::string> LastingPasteboard::leftover(std::chrono::milliseconds limit)
{
    // Where another program has copied the same text since, offering it once more does no harm.
    if (m_text && !handOver(limit) && plainText(limit) == m_text)
        return m_text;
    return std::nullopt;
}
