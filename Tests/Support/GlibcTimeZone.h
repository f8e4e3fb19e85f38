#pragma once

#include "TallyfoxCore/Time/Instant.h"

#include <chrono>
#include <optional>
#include <string>

namespace tallyfox::test {

/// The C library as an independent opinion on time zones: sets `TZ` of this process for its lifetime. Not for parallel
/// threads.
class GlibcTimeZone {
public:
    explicit GlibcTimeZone(const std::string& timeZone);
    GlibcTimeZone(const GlibcTimeZone&) = delete;
    GlibcTimeZone& operator=(const GlibcTimeZone&) = delete;
    ~GlibcTimeZone();

    /// The local date of a moment.
    [[nodiscard]] std::chrono::local_days dayOf(std::chrono::sys_seconds time) const;

private:
    std::optional<std::string> m_before;
};

} // namespace tallyfox::test
