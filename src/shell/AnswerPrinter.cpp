#include "AnswerPrinter.h"

#include "AppError.h"
#include "Terminal.h"
#include "WhiteSpace.h"

#include <cerrno>
#include <system_error>

AnswerPrinter::AnswerPrinter(std::FILE& stream)
    : m_stream(stream), m_isLive(Terminal::isTerminal(stream))
{}

/// Whether a terminal could take `byte` for the start of a command instead of text.
static bool isControl(char byte)
{
    return (static_cast<unsigned char>(byte) < 0x20 && byte != '\n' && byte != '\t') ||
           byte == 0x7F;
}

void AnswerPrinter::write(std::string_view text)
{
    for (const char byte : text) {
        if (!(m_isLive && isControl(byte)))
            std::fputc(byte, &m_stream);
    }
}

void AnswerPrinter::update(std::string_view answer)
{
    if (!m_isLive)
        return;
    // White space at the end waits until it turns out not to be the answer's end.
    const std::string_view visible = WhiteSpace::trimmed(answer);
    write(visible.substr(m_printed));
    m_printed = visible.size();
    std::fflush(&m_stream);
}

void AnswerPrinter::finish(std::string_view answer)
{
    write(WhiteSpace::trimmed(answer).substr(m_printed));
    if (!WhiteSpace::trimmed(answer).empty())
        std::fputc('\n', &m_stream);
    if (std::fflush(&m_stream) != 0 || std::ferror(&m_stream) != 0)
        throw AppError(
            "The output could not be written: " + std::generic_category().message(errno) + ".");
}
