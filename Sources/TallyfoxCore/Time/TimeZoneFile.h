#pragma once

#include "TallyfoxCore/Time/Calendar.h"
#include "TallyfoxCore/Time/TimeZoneRule.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace tallyfox {

/// One compiled zone of the system's database (the TZif format of RFC 8536, versions 1 to 4). Leap seconds, which
/// instants do not count, are skipped.
class TimeZoneFile {
public:
    /// The zone in `bytes`; nothing if they are damaged or more than 65,536. Safe for any bytes.
    static std::optional<TimeZoneFile> decode(std::string_view bytes);

    /// The zone in a file; nothing if it cannot be read, is not a regular file or does not hold a zone.
    static std::optional<TimeZoneFile> read(const std::filesystem::path& path);

    /// The stretch that holds `time`, which must be between `ZoneOffset::earliest` and `latest`.
    [[nodiscard]] ZoneOffset offsetAt(std::chrono::sys_seconds time) const;

private:
    struct Transition {
        std::chrono::sys_seconds time;
        std::chrono::seconds offset{}; ///< from then on
    };
    struct Layout;

    bool readBlock(std::string_view block, const Layout& layout);

    std::chrono::seconds m_first{}; ///< offset before the first transition
    std::vector<Transition> m_transitions; ///< strictly ascending
    std::optional<TimeZoneRule> m_afterwards; ///< from the last transition on; without it the last offset stays
};

} // namespace tallyfox
