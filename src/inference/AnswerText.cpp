#include "AnswerText.h"

#include "Utf8.h"

bool AnswerText::append(std::string_view piece)
{
    if (piece.empty())
        return false;
    m_pending += piece;
    if (!Utf8::isValid(m_pending))
        return false;
    m_text += m_pending;
    m_pending.clear();
    return true;
}
