#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Shows the progress messages of a command on standard error. On a terminal each message replaces
/// the one before on the same line; elsewhere each is a line. One thread at a time.
class StatusLine
{
public:
    explicit StatusLine(std::FILE& stream);
    /// Erases the message that is still on the line.
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    void show(std::string_view message);
    void clear();

    /// Whether a person is watching, so that frequent updates make sense.
    bool isLive() const { return m_isLive; }

    /// How many columns a message may have.
    int columns() const;

private:
    std::FILE& m_stream;
    bool m_isLive;
    bool m_isShown = false;
};
