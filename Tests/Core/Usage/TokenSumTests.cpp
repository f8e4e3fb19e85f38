#include "TallyfoxCore/Usage/TokenSum.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallyfox::test {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr auto message = "tallyfox: stopped: the token counts of the history add up to more than 64 bits hold\n";

TEST(TokenSum, sumWithinTheRangeIsExact)
{
    EXPECT_EQ(tokenSum(1, 2), 3);
    EXPECT_EQ(tokenSum(largest, 0), largest);
    EXPECT_EQ(tokenSum(largest - 1, 1), largest);
    EXPECT_EQ(tokenSum(smallest + 1, -1), smallest);
    EXPECT_EQ(tokenSum(largest, smallest), -1);
}

TEST(TokenSumDeathTest, sumBeyondTheRangeEndsTheProgramWithOneLine)
{
    EXPECT_EXIT(tokenSum(largest, 1), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(1, largest), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(smallest, -1), testing::ExitedWithCode(1), testing::StrEq(message));
    EXPECT_EXIT(tokenSum(smallest, smallest), testing::ExitedWithCode(1), testing::StrEq(message));
}

} // namespace
} // namespace tallyfox::test
