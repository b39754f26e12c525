#include "SummaryMode.h"

#include "SummaryLength.h"

#include <gtest/gtest.h>

namespace {

TEST(SummaryModeTest, AModeIsBuiltFromItsExactLabelOnly)
{
    EXPECT_EQ(summaryModeFromRawValue("3 Bullets"), SummaryMode::bullets);
    EXPECT_EQ(summaryModeFromRawValue("3 bullets"), std::nullopt);
    EXPECT_EQ(summaryModeFromRawValue("Bullets"), std::nullopt);
    EXPECT_EQ(summaryModeFromRawValue(""), std::nullopt);
}

TEST(SummaryModeTest, TheModesStandInTheOrderUsersSee)
{
    ASSERT_EQ(allSummaryModes.size(), 4U);
    EXPECT_EQ(rawValue(allSummaryModes[0]), "3 Bullets");
    EXPECT_EQ(rawValue(allSummaryModes[1]), "Executive");
    EXPECT_EQ(rawValue(allSummaryModes[2]), "TL;DR");
    EXPECT_EQ(rawValue(allSummaryModes[3]), "Actions");
    for (const SummaryMode mode : allSummaryModes)
        EXPECT_EQ(summaryModeFromRawValue(rawValue(mode)), mode);
}

TEST(SummaryLengthTest, TheLengthsStandAtTheirPositions)
{
    EXPECT_EQ(summaryLengthAt(0), SummaryLength::brief);
    EXPECT_EQ(summaryLengthAt(1), SummaryLength::balanced);
    EXPECT_EQ(summaryLengthAt(2), SummaryLength::detailed);
    EXPECT_EQ(label(SummaryLength::brief), "Brief");
    EXPECT_EQ(label(SummaryLength::balanced), "Balanced");
    EXPECT_EQ(label(SummaryLength::detailed), "Detailed");
}

TEST(SummaryLengthDeathTest, APositionOutsideIsFatal)
{
    EXPECT_DEATH(summaryLengthAt(3), "");
}

} // namespace
