#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// The progress lines of a command on standard error: one line that each message replaces on a
/// terminal, a line each elsewhere. One thread at a time.
class StatusLine
{
public:
    explicit StatusLine(std::FILE& stream);
    /// Erases what still stands on the line.
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    void show(std::string_view message);
    void clear();

    /// Whether a person watches, so that frequent updates make sense.
    bool isLive() const { return m_isLive; }

    /// How many columns a message may have.
    int columns() const;

private:
    std::FILE& m_stream;
    bool m_isLive;
    bool m_isShown = false;
};
