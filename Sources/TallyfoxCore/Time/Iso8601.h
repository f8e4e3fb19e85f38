#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <optional>
#include <string_view>

namespace tallyfox {

/// The instant that an ISO 8601 timestamp names, in one of two forms:
/// - "2025-03-04T05:06:07Z": without a fraction, and with a zone designator;
/// - "2025-03-04T05:06:07.123Z": with a fraction of any number of digits (those beyond microseconds are cut off); the
///   zone designator may be missing and then means UTC.
/// A zone designator is "Z", or "+hh:mm", "-hh:mm", "+hhmm" or "-hhmm". Nothing for any other text, for dates and times
/// that do not exist (30 February, 24:00, second 60), and for instants outside of the years 1 to 9999 (UTC).
std::optional<Instant> parseISO8601(std::string_view text);

} // namespace tallyfox
