#include "Tallyfox/Agent/Popover/RankingModel.h"

#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "TallyfoxCore/Usage/TokenSum.h"

namespace tallyfox::RankingModel {

std::int64_t monthlyTotal(std::span<const ProviderState> states, std::string_view board)
{
    std::int64_t sum = 0;
    for (const ProviderState& state : states) {
        if (board == boards.front() || board == providerTitle(state.provider))
            sum = tokenSum(sum, state.summary.totalTokens);
    }
    return sum;
}

} // namespace tallyfox::RankingModel
