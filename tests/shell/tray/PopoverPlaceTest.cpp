#include "PopoverPlace.h"

#include <gtest/gtest.h>

namespace {

constexpr QSize size(460, 640);
const PopoverPlace::Monitor plain = {{0, 0, 1920, 1080}, {0, 0, 1920, 1080}};
const PopoverPlace::Monitor topPanel = {{0, 0, 1920, 1080}, {0, 30, 1920, 1050}};
const PopoverPlace::Monitor bottomPanel = {{0, 0, 1920, 1080}, {0, 0, 1920, 1040}};

TEST(PopoverPlace, BelowAnIconAtTheTop)
{
    EXPECT_EQ(PopoverPlace::atIcon({1000, 4, 22, 22}, size, topPanel),
              QRect(QPoint(780, 30), size));
}

TEST(PopoverPlace, AboveAnIconAtTheBottom)
{
    EXPECT_EQ(PopoverPlace::atIcon({1000, 1050, 22, 22}, size, bottomPanel),
              QRect(QPoint(780, 400), size));
}

TEST(PopoverPlace, WholeBesideAnyIcon)
{
    const std::vector<PopoverPlace::Monitor> monitors = {
        plain, topPanel, bottomPanel, {{-1280, 200, 1280, 720}, {-1240, 200, 1240, 700}}};
    for (const PopoverPlace::Monitor& monitor : monitors) {
        const QRect& area = monitor.area;
        for (int x = area.left() - 30; x < area.right() + 30; x += 37) {
            for (int y = area.top() - 30; y < area.bottom() + 30; y += 41) {
                const QRect place = PopoverPlace::atIcon({x, y, 22, 22}, size, monitor);
                EXPECT_TRUE(monitor.workArea.contains(place));
                EXPECT_EQ(place.size(), size);
            }
        }
    }
}

TEST(PopoverPlace, SmallerOnlyInASmallerWorkArea)
{
    const PopoverPlace::Monitor small = {{0, 0, 400, 600}, {0, 20, 400, 580}};
    EXPECT_EQ(PopoverPlace::atIcon({380, 0, 20, 20}, size, small), small.workArea);
    EXPECT_EQ(PopoverPlace::inCorner(size, small), small.workArea);
    const PopoverPlace::Monitor flat = {{0, 0, 1366, 500}, {0, 0, 1366, 500}};
    EXPECT_EQ(PopoverPlace::inCorner(size, flat).size(), QSize(460, 500));
}

TEST(PopoverPlace, TheCornerIsThatOfThePanel)
{
    EXPECT_EQ(PopoverPlace::inCorner(size, plain), QRect(QPoint(1456, 4), size));
    EXPECT_EQ(PopoverPlace::inCorner(size, topPanel), QRect(QPoint(1456, 34), size));
    EXPECT_EQ(PopoverPlace::inCorner(size, bottomPanel), QRect(QPoint(1456, 396), size));
}

} // namespace
