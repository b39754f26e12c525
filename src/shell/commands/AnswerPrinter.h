#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Prints a growing answer: piece by piece on a terminal, elsewhere as a whole at the end. The
/// output in the end is the trimmed answer and one line feed. One thread at a time.
class AnswerPrinter
{
public:
    explicit AnswerPrinter(std::FILE& stream);
    /// If the answer broke off, ends its line.
    ~AnswerPrinter();
    AnswerPrinter(const AnswerPrinter&) = delete;
    AnswerPrinter& operator=(const AnswerPrinter&) = delete;

    /// Takes the whole answer so far.
    void update(std::string_view answer);

    /// Takes the final answer. Throws AppError if it could not be written completely.
    void finish(std::string_view answer);

private:
    std::FILE& m_stream;
    bool m_isLive;
    std::size_t m_printed = 0; // bytes of the answer, from its first visible one
};
