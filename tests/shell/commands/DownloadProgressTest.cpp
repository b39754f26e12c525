#include "DownloadProgress.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::duration;

std::string text(std::int64_t received, std::int64_t expected, double seconds, int columns = 100)
{
    return DownloadProgress::text(received, expected, duration<double>(seconds), columns);
}

TEST(DownloadProgressTest, TheBarTellsBytesRateAndTimeLeft)
{
    EXPECT_EQ(text(493'000'000, 986'000'000, 10),
              "[###############               ] 493 MB of 986 MB, 49.3 MB/s, 10 s left");
}

TEST(DownloadProgressTest, LongTimesAreToldInMinutes)
{
    EXPECT_TRUE(text(100'000'000, 1'000'000'000, 20).ends_with("3 min 00 s left"));
    EXPECT_TRUE(text(100'000'000, 1'000'000'000, 7.2).ends_with("1 min 05 s left"));
}

TEST(DownloadProgressTest, AnUnknownSizeHasNoBar)
{
    EXPECT_EQ(text(5'000'000, -1, 1), "5 MB, 5.0 MB/s");
}

TEST(DownloadProgressTest, TheFirstMomentHasNoRate)
{
    EXPECT_EQ(text(0, 986'000'000, 0), "[                              ] 0 MB of 986 MB");
}

TEST(DownloadProgressTest, ANarrowTerminalHasNoBar)
{
    EXPECT_EQ(text(493'000'000, 986'000'000, 10, 40), "493 MB of 986 MB, 49.3 MB/s, 10 s left");
}

TEST(DownloadProgressTest, MoreThanWasAnnouncedStaysWithinTheBar)
{
    EXPECT_EQ(text(3'000'000, 2'000'000, 1),
              "[##############################] 3 MB of 2 MB, 3.0 MB/s");
}

} // namespace
