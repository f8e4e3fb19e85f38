#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <QDate>
#include <QLocale>
#include <QString>

#include <memory>

class QLocale;

namespace tallyfox {

/// How far `moment` is from `now`, as the user's language says it briefly: "in 2 hr.", "3 days ago". Told in the
/// largest unit of which at least one whole has to pass (seconds, minutes, hours, days, weeks, months, years), and
/// cut, not rounded, to whole ones. Less than a second away is "in 0 sec.", on either side. Months and years are
/// those of the calendar, in UTC.
QString relativeTimeText(Instant moment, Instant now, const QLocale& locale);

/// Writes dates in the abbreviated style of a locale: "Nov 15, 2026" in English. Making one costs some twenty times
/// what a date costs: one serves a whole list.
class DayFormat {
public:
    explicit DayFormat(const QLocale& locale = {});
    ~DayFormat();
    DayFormat(const DayFormat&) = delete;
    DayFormat& operator=(const DayFormat&) = delete;

    [[nodiscard]] QString text(QDate day) const;

private:
    class Pattern;
    QLocale m_locale;
    std::unique_ptr<Pattern> m_pattern; ///< null where the locale has none
};

} // namespace tallyfox
