#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include <cstdint>
#include <optional>

namespace tallyfox {

/// What the status item shows for the combined percentage: " 42%" and "Tallyfox, 42 percent used". The number stands
/// as it comes, in decimal digits; without one there is no title, and the label is "Tallyfox".
StatusItemContent statusItemContent(std::optional<std::int64_t> combinedPercent);

} // namespace tallyfox
