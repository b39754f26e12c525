#pragma once

#include "StatusLine.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// The progress of a download: a bar with bytes, rate and time left on a terminal, a line for every
/// tenth elsewhere. One thread at a time.
class DownloadProgress
{
public:
    using Clock = std::chrono::steady_clock;

    explicit DownloadProgress(StatusLine& line) : m_line(line) {}

    /// Takes the bytes received so far and those expected in all (-1: unknown).
    void update(std::int64_t received, std::int64_t expected, Clock::time_point now = Clock::now());

    /// What the bar says: for the rate, `elapsed` is the time since the first byte. `columns` is
    /// the room there is.
    static std::string text(std::int64_t received, std::int64_t expected,
                            std::chrono::duration<double> elapsed, int columns);

private:
    StatusLine& m_line;
    std::optional<Clock::time_point> m_start;
    Clock::time_point m_lastShown;
    std::int64_t m_lastTenth = 0;
};
