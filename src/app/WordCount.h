#pragma once

#include <QString>

#include <functional>

/// Counts words, once for each text however often it is asked. One thread at a time.
class WordCount
{
public:
    using Counter = std::function<qsizetype(QStringView)>;

    explicit WordCount(Counter counter = words) : m_counter(std::move(counter)) {}

    qsizetype of(const QString& text);

    /// The pieces between white space; what stands against a word is part of it. Linear.
    static qsizetype words(QStringView text);

private:
    Counter m_counter;
    QString m_counted;
    qsizetype m_count = 0;
};
