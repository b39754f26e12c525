#pragma once

#include <QString>

#include <functional>

/// Counts the words of a text, and only once if it is asked for the same text again. One thread at
/// a time.
class WordCount
{
public:
    using Counter = std::function<qsizetype(QStringView)>;

    explicit WordCount(Counter counter = words) : m_counter(std::move(counter)) {}

    qsizetype of(const QString& text);

    /// How many words `text` has. A word is everything between white space, punctuation included.
    /// Linear.
    static qsizetype words(QStringView text);

private:
    Counter m_counter;
    QString m_counted;
    qsizetype m_count = 0;
};
