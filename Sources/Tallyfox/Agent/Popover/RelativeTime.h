#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <QString>

class QLocale;

namespace tallyfox {

/// How far `moment` is from `now`, as the user's language says it briefly: "in 2 hr.", "3 days ago". Told in the
/// largest unit of which at least one whole has to pass (seconds, minutes, hours, days, weeks, months, years), and
/// cut, not rounded, to whole ones. Less than a second away is "in 0 sec.", on either side. Months and years are
/// those of the calendar, in UTC.
QString relativeTimeText(Instant moment, Instant now, const QLocale& locale);

} // namespace tallyfox
