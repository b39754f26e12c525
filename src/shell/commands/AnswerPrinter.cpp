#include "AnswerPrinter.h"

#include "Terminal.h"
#include "TextOutput.h"
#include "WhiteSpace.h"

AnswerPrinter::AnswerPrinter(std::FILE& stream)
    : m_stream(stream), m_isLive(Terminal::isTerminal(stream))
{}

AnswerPrinter::~AnswerPrinter()
{
    if (m_printed > 0)
        std::fputc('\n', &m_stream);
}

void AnswerPrinter::update(std::string_view answer)
{
    if (!m_isLive)
        return;
    // White space at the end is printed only when more text follows it.
    const std::string_view visible = WhiteSpace::trimmed(answer);
    TextOutput::write(m_stream, visible.substr(m_printed));
    m_printed = visible.size();
    std::fflush(&m_stream);
}

void AnswerPrinter::finish(std::string_view answer)
{
    const std::string_view visible = WhiteSpace::trimmed(answer);
    TextOutput::write(m_stream, visible.substr(m_printed));
    if (!visible.empty())
        std::fputc('\n', &m_stream);
    m_printed = 0;
    TextOutput::flush(m_stream);
}
