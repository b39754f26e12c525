#include "DownloadProgress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

static constexpr std::chrono::milliseconds shownEvery(100);

/// Such as "986 MB", in decimal units, as file managers and web sites count.
static std::string megabytes(std::int64_t bytes)
{
    return std::to_string(bytes / 1'000'000) + " MB";
}

/// Such as "1 min 05 s" or "42 s".
static std::string timeLeft(double seconds)
{
    const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
    if (whole < 60)
        return std::to_string(whole) + " s";
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + " min " + (rest.size() < 2 ? "0" : "") + rest + " s";
}

static std::string rate(double bytesPerSecond)
{
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.1f MB/s", bytesPerSecond / 1e6);
    return buffer.data();
}

static std::string bar(double fraction, int width)
{
    const int filled = static_cast<int>(fraction * width);
    std::string bar = "[";
    bar.append(static_cast<std::size_t>(filled), '#');
    bar.append(static_cast<std::size_t>(width - filled), ' ');
    return bar + "] ";
}

std::string DownloadProgress::text(std::int64_t received, std::int64_t expected,
                                   std::chrono::duration<double> elapsed, int columns)
{
    const double speed =
        elapsed.count() > 0 ? static_cast<double>(received) / elapsed.count() : 0.0;
    std::string numbers = megabytes(received);
    if (expected > 0)
        numbers += " of " + megabytes(expected);
    if (speed > 0) {
        numbers += ", " + rate(speed);
        if (expected > received)
            numbers += ", " + timeLeft(static_cast<double>(expected - received) / speed) + " left";
    }
    const int room = columns - static_cast<int>(numbers.size()) - 4;
    if (expected <= 0 || room < 10)
        return numbers;
    const double fraction = static_cast<double>(received) / static_cast<double>(expected);
    return bar(std::clamp(fraction, 0.0, 1.0), std::min(room, 30)) + numbers;
}

void DownloadProgress::update(std::int64_t received, std::int64_t expected, Clock::time_point now)
{
    if (!m_start)
        m_start = now;
    if (m_line.isLive()) {
        if (now - m_lastShown < shownEvery && received != expected)
            return;
        m_lastShown = now;
        constexpr std::string_view what = "Model ";
        const int room = m_line.columns() - static_cast<int>(what.size());
        m_line.show(std::string(what) + text(received, expected, now - *m_start, room));
        return;
    }
    const std::int64_t tenth = expected > 0 ? received * 10 / expected : 0;
    if (tenth > m_lastTenth) {
        m_lastTenth = tenth;
        m_line.show(std::to_string(tenth * 10) + " % of " + megabytes(expected));
    }
}
