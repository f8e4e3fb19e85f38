#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <QDate>
#include <QLocale>
#include <QString>

#include <memory>

class QLocale;

namespace tallyfox {

/// The distance from `now` to `moment` as a short phrase in the user's language: "in 2 hr.", "3 days ago". Uses the
/// largest unit (seconds, minutes, hours, days, weeks, months, years) of which the distance has at least one, and
/// truncates to whole units. Less than a second is "in 0 sec." in both directions. Months and years are calendar
/// ones, in UTC.
QString relativeTimeText(Instant moment, Instant now, const QLocale& locale);

/// Formats dates in the abbreviated style of a locale: "Nov 15, 2026" in English. Creating one costs about twenty
/// times as much as formatting a date, so use one for a whole list.
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
    std::unique_ptr<Pattern> m_pattern; ///< null if the locale has none
};

} // namespace tallyfox
