#pragma once

#include "TallyfoxCore/Time/Calendar.h"

namespace tallyfox {

/// The user's calendar now: the zone that `TZ` names; without `TZ`, the zone the system is set to. Where that is
/// unknown, or its data cannot be used, the calendar is UTC, as for every other program. Everything is read afresh at
/// each call (a fraction of a millisecond), so a changed setting counts at once. Any thread.
Calendar systemCalendar();

} // namespace tallyfox
