#include "GreyScaling.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

Picture row(const std::vector<l_uint32>& shades)
{
    Picture picture(pixCreate(static_cast<int>(shades.size()), 1, 8));
    for (std::size_t x = 0; x < shades.size(); ++x)
        pixSetPixel(picture.get(), static_cast<int>(x), 0, shades[x]);
    return picture;
}

std::vector<l_uint32> firstRow(Pix* picture)
{
    std::vector<l_uint32> shades(static_cast<std::size_t>(pixGetWidth(picture)));
    for (std::size_t x = 0; x < shades.size(); ++x)
        pixGetPixel(picture, static_cast<int>(x), 0, &shades[x]);
    return shades;
}

TEST(GreyScalingTest, PixelsAreInterpolatedBetweenTheirCentres)
{
    const Picture twice = GreyScaling::enlarged(row({0, 100, 20}).get(), 2);
    EXPECT_EQ(pixGetHeight(twice.get()), 2);
    EXPECT_EQ(firstRow(twice.get()), (std::vector<l_uint32>{0, 25, 75, 80, 40, 20}));
}

TEST(GreyScalingTest, OneShadeStaysThatShade)
{
    for (const l_uint32 shade : {0U, 1U, 254U, 255U}) {
        for (const double factor : {1.0, 1.3, 2.0}) {
            const Picture picture =
                GreyScaling::enlarged(row(std::vector<l_uint32>(20, shade)).get(), factor);
            for (const l_uint32 found : firstRow(picture.get()))
                EXPECT_EQ(found, shade);
        }
    }
}

TEST(GreyScalingTest, OnlyLongAndLargePicturesAreLimited)
{
    EXPECT_EQ(pixGetWidth(GreyScaling::limited(row({1, 2, 3}), 3, 3).get()), 3);
    const Picture narrow = GreyScaling::limited(row(std::vector<l_uint32>(1000, 9)), 100, 1e6);
    EXPECT_EQ(pixGetWidth(narrow.get()), 100);
    EXPECT_EQ(pixGetHeight(narrow.get()), 1);
    const Picture small = GreyScaling::limited(Picture(pixCreate(400, 100, 8)), 1000, 10000);
    EXPECT_EQ(pixGetWidth(small.get()), 200);
    EXPECT_EQ(pixGetHeight(small.get()), 50);
}

} // namespace
