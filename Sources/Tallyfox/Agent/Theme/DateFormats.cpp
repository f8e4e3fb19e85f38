#include "Tallyfox/Agent/Theme/DateFormats.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>
#include <chrono>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

struct Distance {
    std::int64_t count; ///< not negative
    URelativeDateTimeUnit unit;
};

/// The whole months between two moments; `from` is the earlier one.
std::int64_t wholeMonths(Instant from, Instant to)
{
    const auto fromDay = std::chrono::floor<std::chrono::days>(from);
    const auto toDay = std::chrono::floor<std::chrono::days>(to);
    const std::chrono::year_month_day first{fromDay};
    const std::chrono::year_month_day last{toDay};
    const std::int64_t months = (last.year() / last.month() - first.year() / first.month()).count();
    // The last month is complete at the same day and time of day.
    const bool isWhole = last.day() > first.day() || (last.day() == first.day() && to - toDay >= from - fromDay);
    return isWhole ? months : months - 1;
}

Distance distance(Instant from, Instant to)
{
    const auto passed = to - from;
    const std::int64_t months = wholeMonths(from, to);
    if (months >= 12)
        return {months / 12, UDAT_REL_UNIT_YEAR};
    if (months >= 1)
        return {months, UDAT_REL_UNIT_MONTH};
    if (passed >= std::chrono::weeks{1})
        return {passed / std::chrono::weeks{1}, UDAT_REL_UNIT_WEEK};
    if (passed >= 24h)
        return {passed / 24h, UDAT_REL_UNIT_DAY};
    if (passed >= 1h)
        return {passed / 1h, UDAT_REL_UNIT_HOUR};
    if (passed >= 1min)
        return {passed / 1min, UDAT_REL_UNIT_MINUTE};
    return {passed / 1s, UDAT_REL_UNIT_SECOND};
}

QString phrase(double count, URelativeDateTimeUnit unit, const QLocale& locale, UErrorCode& status)
{
    const icu::Locale language = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), status);
    const icu::RelativeDateTimeFormatter formatter{language, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE,
                                                   status};
    icu::UnicodeString text;
    formatter.formatNumeric(count, unit, text, status);
    return QString{reinterpret_cast<const QChar*>(text.getBuffer()), text.length()};
}

} // namespace

QString relativeTimeText(Instant moment, Instant now, const QLocale& locale)
{
    const bool isPast = moment < now;
    const auto [count, unit] = isPast ? distance(moment, now) : distance(now, moment);
    UErrorCode status = U_ZERO_ERROR;
    const auto signedCount = static_cast<double>(isPast ? -count : count);
    QString text = phrase(signedCount, unit, locale, status);
    if (U_SUCCESS(status))
        return text;
    // Without ICU's data there is no phrase in any language, so show the moment itself.
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
    return locale.toString(QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc()), QLocale::ShortFormat);
}

/// Qt's own formats either are all digits or have the full name of the month; ICU has an abbreviated one.
class DayFormat::Pattern {
public:
    static std::unique_ptr<Pattern> forLocale(const QLocale& locale)
    {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale icuLocale = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), status);
        auto pattern = std::make_unique<Pattern>();
        pattern->m_format.reset(
            icu::DateFormat::createInstanceForSkeleton(icu::UnicodeString{u"yMMMd"}, icuLocale, status));
        if (U_FAILURE(status) || !pattern->m_format)
            return nullptr;
        pattern->m_format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
        return pattern;
    }

    QString text(QDate day) const
    {
        icu::UnicodeString text;
        m_format->format(static_cast<UDate>(QDate{1970, 1, 1}.daysTo(day)) * U_MILLIS_PER_DAY, text);
        return QString::fromUtf16(text.getBuffer(), text.length());
    }

private:
    std::unique_ptr<icu::DateFormat> m_format;
};

DayFormat::DayFormat(const QLocale& locale)
    : m_locale(locale)
    , m_pattern(Pattern::forLocale(locale))
{ }

DayFormat::~DayFormat() = default;

QString DayFormat::text(QDate day) const
{
    return m_pattern ? m_pattern->text(day) : m_locale.toString(day, QLocale::ShortFormat);
}

} // namespace tallyfox
