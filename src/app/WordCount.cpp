#include "WordCount.h"

qsizetype WordCount::of(const QString& text)
{
    // Who shares a buffer does not write to it, so it holds what was counted.
    if (!text.isSharedWith(m_counted)) {
        m_count = m_counter(text);
        m_counted = text;
    }
    return m_count;
}

qsizetype WordCount::words(QStringView text)
{
    qsizetype count = 0;
    bool isInWord = false;
    // No white space lies outside the range of single code units.
    for (const QChar character : text) {
        const bool isSpace = character.isSpace();
        count += !isSpace && !isInWord ? 1 : 0;
        isInWord = !isSpace;
    }
    return count;
}
