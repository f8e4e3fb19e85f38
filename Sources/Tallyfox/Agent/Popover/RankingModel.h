#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace tallyfox::RankingModel {

/// The boards, in the order of the picker: all providers, then one for each by its title.
inline constexpr std::array<std::string_view, 4> boards{"Overall", "Claude", "Codex", "Gemini"};

/// The user's own tokens of the last 30 days on a board; 0 where no state has the board's title. A sum beyond 64 bits
/// ends the program (TokenSum.h).
std::int64_t monthlyTotal(std::span<const ProviderState> states, std::string_view board);

} // namespace tallyfox::RankingModel
