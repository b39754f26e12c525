#include "WordCount.h"

qsizetype WordCount::of(const QString& text)
{
    // A string that shares its buffer with another never writes to it, so both are still equal.
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
    // No white space takes two code units.
    for (const QChar character : text) {
        const bool isSpace = character.isSpace();
        count += !isSpace && !isInWord ? 1 : 0;
        isInWord = !isSpace;
    }
    return count;
}
