#include "Support/Moments.h"
#include "Tallyfox/Agent/Theme/DateFormats.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

using namespace std::chrono_literals;

const Instant noon = utcTime(2026, 3, 15, 12);

std::string phrase(Instant moment, const char* language = "en_US", Instant now = noon)
{
    return relativeTimeText(moment, now, QLocale{QLatin1String{language}}).toStdString();
}

TEST(RelativeTimeText, usesTheLargestUnitOfWhichThereIsOne)
{
    EXPECT_EQ(phrase(noon + 1s), "in 1 sec.");
    EXPECT_EQ(phrase(noon + 59s), "in 59 sec.");
    EXPECT_EQ(phrase(noon + 60s), "in 1 min.");
    EXPECT_EQ(phrase(noon + 59min), "in 59 min.");
    EXPECT_EQ(phrase(noon + 60min), "in 1 hr.");
    EXPECT_EQ(phrase(noon + 23h), "in 23 hr.");
    EXPECT_EQ(phrase(noon + 24h), "in 1 day");
    EXPECT_EQ(phrase(noon + 6 * 24h), "in 6 days");
    EXPECT_EQ(phrase(noon + 7 * 24h), "in 1 wk.");
    EXPECT_EQ(phrase(noon + 30 * 24h), "in 4 wk.");
    EXPECT_EQ(phrase(noon + 31 * 24h), "in 1 mo.");
    EXPECT_EQ(phrase(utcTime(2027, 3, 15, 12)), "in 1 yr.");
    EXPECT_EQ(phrase(utcTime(2031, 1, 1)), "in 4 yr.");
}

TEST(RelativeTimeText, fractionsAreTruncated)
{
    EXPECT_EQ(phrase(noon + 119min + 59s), "in 1 hr.");
    EXPECT_EQ(phrase(noon + 2h), "in 2 hr.");
    EXPECT_EQ(phrase(noon - 119min), "1 hr. ago");
    EXPECT_EQ(phrase(noon + 1s + 999ms), "in 1 sec.");
}

TEST(RelativeTimeText, pastMomentIsAgo)
{
    EXPECT_EQ(phrase(noon - 2h), "2 hr. ago");
    EXPECT_EQ(phrase(noon - 3 * 24h), "3 days ago");
    EXPECT_EQ(phrase(distantPast), "2,025 yr. ago");
}

TEST(RelativeTimeText, lessThanASecondIsInZeroSeconds)
{
    EXPECT_EQ(phrase(noon), "in 0 sec.");
    EXPECT_EQ(phrase(noon + 999ms), "in 0 sec.");
    EXPECT_EQ(phrase(noon - 999ms), "in 0 sec.");
}

TEST(RelativeTimeText, monthsAreCalendarMonths)
{
    EXPECT_EQ(phrase(utcTime(2026, 3, 28), "en_US", utcTime(2026, 2, 28)), "in 1 mo.");
    EXPECT_EQ(phrase(utcTime(2026, 2, 28), "en_US", utcTime(2026, 1, 31)), "in 4 wk.");
    EXPECT_EQ(phrase(utcTime(2026, 4, 15, 11, 59)), "in 4 wk.") << "one minute short";
    EXPECT_EQ(phrase(utcTime(2027, 3, 15, 11, 59)), "in 11 mo.") << "one minute short";
}

TEST(RelativeTimeText, phraseIsInTheLanguageOfTheLocale)
{
    EXPECT_EQ(phrase(noon + 2h, "de_DE"), "in 2 Std.");
    EXPECT_EQ(phrase(noon - 2h, "de_DE"), "vor 2 Std.");
    EXPECT_EQ(phrase(noon + 2h, "fr_FR"), "dans 2\u00a0h");
    EXPECT_EQ(phrase(noon + 2h, "ar_EG"), "خلال ساعتين");
    EXPECT_EQ(phrase(noon + 5h, "ar_EG"), "خلال ٥ ساعات");
    EXPECT_EQ(phrase(noon + 2h, "C"), "in 2 hr.");
}

TEST(RelativeTimeText, extremeMomentsHavePhrases)
{
    EXPECT_EQ(phrase(distantFuture), "in 7,973 yr.");
    EXPECT_EQ(phrase(distantFuture, "en_US", distantPast), "in 9,998 yr.");
}

TEST(DayFormat, formatsAbbreviatedDateOfTheLocale)
{
    const QDate day{2026, 11, 15};
    const DayFormat english{QLocale{QLocale::English, QLocale::UnitedStates}};
    const DayFormat german{QLocale{QLocale::German, QLocale::Germany}};
    EXPECT_EQ(english.text(day), QStringLiteral("Nov 15, 2026"));
    EXPECT_EQ(german.text(day), QStringLiteral("15. Nov. 2026"));
}

TEST(DayFormat, firstAndLastDayStayInTheirYear)
{
    const DayFormat format{QLocale{QLocale::English, QLocale::UnitedStates}};
    EXPECT_EQ(format.text(QDate(2026, 1, 1)), QStringLiteral("Jan 1, 2026"));
    EXPECT_EQ(format.text(QDate(2026, 12, 31)), QStringLiteral("Dec 31, 2026"));
}

} // namespace
} // namespace tallyfox::test
