#include "Tallyfox/Agent/Shell/StatusItemText.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallyfox::test {
namespace {

TEST(StatusItemText, withoutAPercentageThereIsTheSymbolAlone)
{
    EXPECT_EQ(statusItemContent(std::nullopt), (StatusItemContent{QString{}, QStringLiteral("Tallyfox")}));
}

TEST(StatusItemText, percentageStandsBehindOneSpace)
{
    const auto expectContent = [](std::int64_t percent, const QString& title, const QString& label) {
        EXPECT_EQ(statusItemContent(percent), (StatusItemContent{title, label}));
    };
    expectContent(42, QStringLiteral(" 42%"), QStringLiteral("Tallyfox, 42 percent used"));
    expectContent(0, QStringLiteral(" 0%"), QStringLiteral("Tallyfox, 0 percent used"));
    expectContent(100, QStringLiteral(" 100%"), QStringLiteral("Tallyfox, 100 percent used"));
}

TEST(StatusItemText, numberStandsAsItComes)
{
    EXPECT_EQ(statusItemContent(-3).title, QStringLiteral(" -3%"));
    EXPECT_EQ(statusItemContent(1234).title, QStringLiteral(" 1234%"));
    EXPECT_EQ(statusItemContent(std::numeric_limits<std::int64_t>::min()).title,
              QStringLiteral(" -9223372036854775808%"));
}

} // namespace
} // namespace tallyfox::test
