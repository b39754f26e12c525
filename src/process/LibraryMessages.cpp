#include "LibraryMessages.h"

LibraryMessages::LibraryMessages()
    : m_standardError(stderr), m_nowhere(std::fopen("/dev/null", "we"))
{
    // The C library's stream, not the descriptor: whatever reports a crash still reaches that.
    if (m_nowhere != nullptr)
        stderr = m_nowhere;
}

LibraryMessages::~LibraryMessages()
{
    stderr = m_standardError;
    if (m_nowhere != nullptr)
        std::fclose(m_nowhere);
}
