#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class Card;
class SegmentedPicker;
class TextLabel;

namespace RankingModel {

inline constexpr std::string_view overallBoard = "Overall";

/// The boards, in the order of the picker: all providers together, each provider by its title, and one that is only
/// announced.
std::vector<std::string_view> boards();

/// The user's tokens of the last 30 days on a board; 0 if no state has the board's title. A sum beyond 64 bits ends
/// the program (TokenSum.h).
std::int64_t monthlyTotal(std::span<const ProviderState> states, std::string_view board);

} // namespace RankingModel

/// The third tab: the user's own total on a board. There is no ranking server, so the buttons do nothing.
class RankingView : public TabView {
    Q_OBJECT

public:
    explicit RankingView(QWidget* parent = nullptr);

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    [[nodiscard]] Card* makePanel();
    void addButtons(QVBoxLayout& layout);
    void drawTotal();

    std::vector<ProviderState> m_states;
    SegmentedPicker* m_board;
    TextLabel* m_total = nullptr;
};

} // namespace tallyfox
