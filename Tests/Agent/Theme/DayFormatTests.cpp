#include "Tallyfox/Agent/Theme/DayFormat.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

TEST(DayFormat, isTheAbbreviatedDateOfTheLocale)
{
    const QDate day{2026, 11, 15};
    const DayFormat english{QLocale{QLocale::English, QLocale::UnitedStates}};
    const DayFormat german{QLocale{QLocale::German, QLocale::Germany}};
    EXPECT_EQ(english.text(day), QStringLiteral("Nov 15, 2026"));
    EXPECT_EQ(german.text(day), QStringLiteral("15. Nov. 2026"));
}

TEST(DayFormat, firstAndLastDayOfAYearStayInIt)
{
    const DayFormat format{QLocale{QLocale::English, QLocale::UnitedStates}};
    EXPECT_EQ(format.text(QDate(2026, 1, 1)), QStringLiteral("Jan 1, 2026"));
    EXPECT_EQ(format.text(QDate(2026, 12, 31)), QStringLiteral("Dec 31, 2026"));
}

} // namespace
} // namespace tallyfox::test
