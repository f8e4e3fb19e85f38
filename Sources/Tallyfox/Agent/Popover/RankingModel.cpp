#include "Tallyfox/Agent/Popover/RankingModel.h"

#include "TallyfoxCore/Usage/TokenSum.h"

namespace tallyfox::RankingModel {

std::vector<std::string_view> boards()
{
    std::vector<std::string_view> boards{overallBoard};
    for (const Provider provider : allProviders)
        boards.push_back(traitsOf(provider).title);
    boards.push_back("Gemini");
    return boards;
}

std::int64_t monthlyTotal(std::span<const ProviderState> states, std::string_view board)
{
    std::int64_t sum = 0;
    for (const ProviderState& state : states) {
        if (board == overallBoard || board == traitsOf(state.provider).title)
            sum = tokenSum(sum, state.summary.totalTokens);
    }
    return sum;
}

} // namespace tallyfox::RankingModel
