#pragma once

#include <string>
#include <string_view>

/// Collects the bytes of generated tokens into text that is valid UTF-8 at every moment. A
/// character split over several tokens appears with its last byte.
class AnswerText
{
public:
    /// Adds the bytes of one token. Returns whether `text()` has grown.
    bool append(std::string_view piece);

    const std::string& text() const { return m_text; }

private:
    std::string m_text;
    std::string m_pending;
};
