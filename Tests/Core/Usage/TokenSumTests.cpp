#include "TallyfoxCore/Usage/TokenSum.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallyfox::test {
namespace {

constexpr std::int64_t largestSum = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallestSum = std::numeric_limits<std::int64_t>::min();
constexpr auto message = "tallyfox: stopped: the token counts of the history add up to more than 64 bits hold\n";

TEST(TokenSum, sumWithinTheRangeIsExact)
{
    EXPECT_EQ(tokenSum(1, 2), 3);
    EXPECT_EQ(tokenSum(largestSum, 0), largestSum);
    EXPECT_EQ(tokenSum(largestSum - 1, 1), largestSum);
    EXPECT_EQ(tokenSum(smallestSum + 1, -1), smallestSum);
    EXPECT_EQ(tokenSum(largestSum, smallestSum), -1);
}

TEST(TokenSumDeathTest, sumBeyondTheRangeEndsTheProgramWithOneLine)
{
    EXPECT_EXIT(tokenSum(largestSum, 1), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(1, largestSum), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(smallestSum, -1), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(smallestSum, smallestSum), testing::ExitedWithCode(1), testing::StrEq(message));
}

} // namespace
} // namespace tallyfox::test
