#include "Tallyfox/Agent/Charts/AxisScale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace tallyfox {

namespace {

std::uint64_t stepsToReach(std::uint64_t largest, std::uint64_t step)
{
    return (largest - 1) / step + 1;
}

struct Unit {
    std::uint64_t size;
    std::string_view sign;
};

constexpr std::array units{Unit{1'000'000'000'000, "T"}, Unit{1'000'000'000, "B"}, Unit{1'000'000, "M"},
                           Unit{1'000, "K"}};

} // namespace

std::uint64_t AxisScale::top() const
{
    return step * steps;
}

std::vector<std::uint64_t> AxisScale::marks() const
{
    std::vector<std::uint64_t> marks;
    for (std::uint64_t i = 0; i <= steps; ++i)
        marks.push_back(step * i);
    return marks;
}

AxisScale axisScale(std::int64_t largest, std::uint64_t mostSteps)
{
    const auto reach = static_cast<std::uint64_t>(std::max<std::int64_t>(largest, 1));
    // Ends at 10^19 at the latest, which 64 bits hold and no count exceeds.
    for (std::uint64_t power = 1;; power *= 10) {
        // Half of five would be no whole number of tokens at the very first power.
        const std::uint64_t twoAndAHalf = power == 1 ? 5 : power / 10 * 25;
        for (const std::uint64_t step : {power, 2 * power, twoAndAHalf, 5 * power}) {
            if (stepsToReach(reach, step) <= mostSteps)
                return {step, stepsToReach(reach, step)};
        }
    }
}

std::string axisLabel(std::uint64_t mark)
{
    const auto* unit = std::find_if(units.begin(), units.end(), [mark](const Unit& each) { return mark >= each.size; });
    if (unit == units.end())
        return std::to_string(mark);
    std::array<char, 32> digits{};
    const double value = static_cast<double>(mark) / static_cast<double>(unit->size);
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    return std::string{digits.begin(), end} + std::string{unit->sign};
}

} // namespace tallyfox
