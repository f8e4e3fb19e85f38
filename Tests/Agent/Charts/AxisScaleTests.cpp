#include "Tallyfox/Agent/Charts/AxisScale.h"

#include <gmock/gmock.h>

#include <limits>

namespace tallyfox::test {
namespace {

TEST(AxisScale, stepIsTheSmallestRoundNumberThatReaches)
{
    EXPECT_EQ(axisScale(5, 5), (AxisScale{1, 5}));
    EXPECT_EQ(axisScale(6, 5), (AxisScale{2, 3}));
    EXPECT_EQ(axisScale(12, 5), (AxisScale{5, 3}));
    EXPECT_EQ(axisScale(101, 5), (AxisScale{25, 5}));
    EXPECT_EQ(axisScale(126, 5), (AxisScale{50, 3}));
    EXPECT_EQ(axisScale(2'400'000, 5), (AxisScale{500'000, 5}));
    EXPECT_EQ(axisScale(999'999'999'999, 5), (AxisScale{200'000'000'000, 5}));
}

TEST(AxisScale, nothingToShowStillHasAnAxis)
{
    EXPECT_EQ(axisScale(0, 5), (AxisScale{1, 1}));
    EXPECT_EQ(axisScale(-3, 5), (AxisScale{1, 1}));
}

TEST(AxisScale, everySizeIsReachedWithinItsStepsByARoundOne)
{
    for (std::int64_t size = 1; size < std::numeric_limits<std::int64_t>::max() / 3; size = size * 3 - size / 2) {
        const AxisScale scale = axisScale(size, 5);
        EXPECT_LE(scale.steps, 5U);
        EXPECT_GE(scale.top(), static_cast<std::uint64_t>(size));
        std::uint64_t digits = scale.step;
        while (digits % 10 == 0)
            digits /= 10;
        EXPECT_THAT(digits, testing::AnyOf(1U, 2U, 5U, 25U));
    }
}

TEST(AxisScale, largestCountIsReached)
{
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(axisScale(largest, 5), (AxisScale{2'000'000'000'000'000'000U, 5}));
    EXPECT_EQ(axisScale(largest, 1), (AxisScale{10'000'000'000'000'000'000U, 1}));
}

TEST(AxisScale, marksBeginAtZeroAndEndAtTheTop)
{
    EXPECT_THAT((AxisScale{25, 3}.marks()), testing::ElementsAre(0U, 25U, 50U, 75U));
    EXPECT_EQ((AxisScale{25, 3}.top()), 75U);
}

TEST(AxisLabel, isExactAndShort)
{
    EXPECT_EQ(axisLabel(0), "0");
    EXPECT_EQ(axisLabel(750), "750");
    EXPECT_EQ(axisLabel(1'000), "1K");
    EXPECT_EQ(axisLabel(2'500), "2.5K");
    EXPECT_EQ(axisLabel(7'500'000), "7.5M");
    EXPECT_EQ(axisLabel(1'250'000), "1.25M");
    EXPECT_EQ(axisLabel(200'000'000'000), "200B");
    EXPECT_EQ(axisLabel(1'000'000'000'000), "1T");
    EXPECT_EQ(axisLabel(10'000'000'000'000'000'000U), "10000000T");
}

} // namespace
} // namespace tallyfox::test
