#include "PageRecord.h"

#include <gtest/gtest.h>

namespace {

using DocumentReader::ScannedPage;

TEST(PageRecordTest, WhatIsWrittenIsTakenOneByOne)
{
    const std::vector<ScannedPage> pages = {{2, 15, "text\n"},
                                            {0, 15, ""},
                                            {14, 15, std::nullopt},
                                            {1, 15, std::string("\x1Epage 0 15 3\nabc\0", 17)}};
    std::string bytes;
    for (const ScannedPage& page : pages)
        bytes += PageRecord::written(page);
    bytes += "rest";
    std::string_view left = bytes;
    for (const ScannedPage& page : pages) {
        const std::optional<ScannedPage> taken = PageRecord::take(left);
        ASSERT_TRUE(taken);
        EXPECT_EQ(taken->index, page.index);
        EXPECT_EQ(taken->count, page.count);
        EXPECT_EQ(taken->text, page.text);
    }
    EXPECT_EQ(PageRecord::take(left), std::nullopt);
    EXPECT_EQ(left, "rest");
}

TEST(PageRecordTest, ATruncatedRecordIsNone)
{
    const std::string record = PageRecord::written({0, 15, "text"});
    for (std::size_t size = 0; size < record.size(); ++size) {
        std::string_view left = std::string_view(record).substr(0, size);
        EXPECT_FALSE(PageRecord::take(left)) << size;
        EXPECT_EQ(left.size(), size);
    }
}

TEST(PageRecordTest, WhatIsNoRecordIsNone)
{
    for (std::string_view bytes :
         {"page 0 15 0\n", "\x1Epage 15 15 0\n", "\x1Epage -1 15 0\n", "\x1Epage 0 99999 0\n",
          "\x1Epage 0 15 99999999999999999999\n", "\x1Epage 0 15 x\n", "\x1Epage 0 15\n"})
        EXPECT_FALSE(PageRecord::take(bytes));
}

} // namespace
