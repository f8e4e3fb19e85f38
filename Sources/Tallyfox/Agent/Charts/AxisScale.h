#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallyfox {

/// The marks of an axis that starts at zero.
struct AxisScale {
    std::uint64_t step = 1; ///< 1, 2, 2.5 or 5 times a power of ten; always a whole number
    std::uint64_t steps = 1; ///< at least 1

    /// The last mark: at least as large as every number the scale was made for.
    [[nodiscard]] std::uint64_t top() const;
    /// Every mark, zero first.
    [[nodiscard]] std::vector<std::uint64_t> marks() const;

    friend bool operator==(const AxisScale&, const AxisScale&) = default;
};

/// The scale with the smallest step that reaches `largest` within `mostSteps` (at least 1). A `largest` below 1 is
/// taken as 1.
AxisScale axisScale(std::int64_t largest, std::uint64_t mostSteps);

/// A mark's label, exact and short: "0", "250", "2.5K", "1M", "10B".
std::string axisLabel(std::uint64_t mark);

} // namespace tallyfox
