#pragma once

#include "StatusLine.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// Shows the progress of a download: on a terminal a bar with bytes, rate and time left, elsewhere
/// a line for every tenth. One thread at a time.
class DownloadProgress
{
public:
    using Clock = std::chrono::steady_clock;

    explicit DownloadProgress(StatusLine& line) : m_line(line) {}

    /// `received` is how many bytes have been received so far, `expected` how many are expected in
    /// all (-1 if unknown).
    void update(std::int64_t received, std::int64_t expected, Clock::time_point now = Clock::now());

    /// What the terminal shows, in at most `columns` columns if possible. `elapsed` is the time
    /// since the first byte, from which the rate is computed.
    static std::string text(std::int64_t received, std::int64_t expected,
                            std::chrono::duration<double> elapsed, int columns);

private:
    StatusLine& m_line;
    std::optional<Clock::time_point> m_start;
    Clock::time_point m_lastShown;
    std::int64_t m_lastTenth = 0;
};
