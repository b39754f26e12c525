#include "StatusLine.h"

#include "Terminal.h"

StatusLine::StatusLine(std::FILE& stream) : m_stream(stream), m_isLive(Terminal::isTerminal(stream))
{}

StatusLine::~StatusLine()
{
    clear();
}

void StatusLine::show(std::string_view message)
{
    clear();
    std::fwrite(message.data(), 1, message.size(), &m_stream);
    std::fputs(m_isLive ? "" : "\n", &m_stream);
    std::fflush(&m_stream);
    m_isShown = true;
}

void StatusLine::clear()
{
    if (m_isShown && m_isLive) {
        std::fputs("\r\x1B[K", &m_stream); // goes to the line's start and erases to its end
        std::fflush(&m_stream);
    }
    m_isShown = false;
}

int StatusLine::columns() const
{
    return Terminal::columns(m_stream);
}
