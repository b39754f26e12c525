#include "AnswerPrinter.h"

#include "AppError.h"
#include "Terminal.h"
#include "WhiteSpace.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

AnswerPrinter::AnswerPrinter(std::FILE& stream)
    : m_stream(stream), m_isLive(Terminal::isTerminal(stream))
{}

AnswerPrinter::~AnswerPrinter()
{
    if (m_printed > 0)
        std::fputc('\n', &m_stream);
}

/// How many bytes at the start of `text` are a control code that a terminal could take for the
/// start of a command: C0 but for tabs and line feeds, delete, and C1.
static std::size_t controlCode(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if ((first < 0x20 && first != '\n' && first != '\t') || first == 0x7F)
        return 1;
    const bool isC1 =
        first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
    return isC1 ? 2 : 0;
}

void AnswerPrinter::write(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t skipped = m_isLive ? controlCode(text) : 0;
        if (skipped == 0)
            std::fputc(text[0], &m_stream);
        text.remove_prefix(std::max(skipped, std::size_t{1}));
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
    const std::string_view visible = WhiteSpace::trimmed(answer);
    write(visible.substr(m_printed));
    if (!visible.empty())
        std::fputc('\n', &m_stream);
    m_printed = 0;
    if (std::fflush(&m_stream) != 0 || std::ferror(&m_stream) != 0)
        throw AppError(
            "The output could not be written: " + std::generic_category().message(errno) + ".");
}
