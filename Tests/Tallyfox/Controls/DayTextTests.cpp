#include "Tallyfox/DayText.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

TEST(DayText, isTheAbbreviatedDateOfTheLocale)
{
    const QDate day{2026, 11, 15};
    EXPECT_EQ(dayText(day, QLocale{QLocale::English, QLocale::UnitedStates}), QStringLiteral("Nov 15, 2026"));
    EXPECT_EQ(dayText(day, QLocale{QLocale::German, QLocale::Germany}), QStringLiteral("15. Nov. 2026"));
}

TEST(DayText, firstAndLastDayOfAYearStayInIt)
{
    const QLocale locale{QLocale::English, QLocale::UnitedStates};
    EXPECT_EQ(dayText({2026, 1, 1}, locale), QStringLiteral("Jan 1, 2026"));
    EXPECT_EQ(dayText({2026, 12, 31}, locale), QStringLiteral("Dec 31, 2026"));
}

} // namespace
} // namespace tallyfox::test
