#include "RecognizedPages.h"

#include <gtest/gtest.h>

namespace {

/// Of pages with those indices, out of `count`.
std::string shareOf(int count, const std::vector<int>& indices)
{
    RecognizedPages pages(count);
    for (const int index : indices)
        pages.add(index, "text");
    return pages.share();
}

TEST(RecognizedPagesTest, TextsStandInThePagesOrderWithAnEmptyLineBetween)
{
    RecognizedPages pages(4);
    pages.add(3, "last");
    pages.add(1, "");
    pages.add(0, "first\n");
    EXPECT_EQ(pages.text(), "first\n\n\n\n\nlast");
    pages.add(2, std::nullopt);
    EXPECT_EQ(pages.text(), "first\n\n\n\n\nlast");
    EXPECT_EQ(RecognizedPages(0).text(), "");
}

TEST(RecognizedPagesTest, TheShareNamesThePagesThatAreDone)
{
    EXPECT_EQ(shareOf(15, {2, 0, 1, 3, 4, 5, 6, 7, 8}), "pages 1–9 of 15");
    EXPECT_EQ(shareOf(15, {0}), "page 1 of 15");
    EXPECT_EQ(shareOf(15, {0, 1, 3, 14}), "pages 1–2, 4, 15 of 15");
    EXPECT_EQ(shareOf(3, {1, 2}), "pages 2–3 of 3");
}

TEST(RecognizedPagesTest, TheWholeIsNoShare)
{
    EXPECT_EQ(shareOf(3, {0, 1, 2}), "");
    EXPECT_EQ(shareOf(3, {}), "");
    EXPECT_EQ(shareOf(0, {}), "");
}

} // namespace
