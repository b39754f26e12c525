#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Prints a growing answer: piece by piece on a terminal, whole at the end elsewhere. What stands
/// there in the end is the trimmed answer and one line feed. One thread at a time.
class AnswerPrinter
{
public:
    explicit AnswerPrinter(std::FILE& stream);
    /// Ends the line of an answer that broke off.
    ~AnswerPrinter();
    AnswerPrinter(const AnswerPrinter&) = delete;
    AnswerPrinter& operator=(const AnswerPrinter&) = delete;

    /// Takes the whole answer so far.
    void update(std::string_view answer);

    /// Takes the final answer. Throws AppError when it could not be written completely.
    void finish(std::string_view answer);

private:
    std::FILE& m_stream;
    bool m_isLive;
    std::size_t m_printed = 0; // bytes of the answer, from its first visible one
};
