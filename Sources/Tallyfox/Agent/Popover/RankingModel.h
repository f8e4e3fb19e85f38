#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tallyfox::RankingModel {

inline constexpr std::string_view overallBoard = "Overall";

/// The boards, in the order of the picker: all providers, then one for each by its title, then one that is announced.
std::vector<std::string_view> boards();

/// The user's own tokens of the last 30 days on a board; 0 where no state has the board's title. A sum beyond 64 bits
/// ends the program (TokenSum.h).
std::int64_t monthlyTotal(std::span<const ProviderState> states, std::string_view board);

} // namespace tallyfox::RankingModel
