#pragma once

#include <string_view>
#include <vector>

namespace tallyfox::bench {

/// The middle value; the mean of the two middle ones for an even count. `values` must not be empty.
double median(std::vector<double> values);

/// Prints one row of the table that scripts/bench shows: what was measured, the value with its unit, the target.
void printFigure(std::string_view what, double value, std::string_view unit, std::string_view target);

} // namespace tallyfox::bench
