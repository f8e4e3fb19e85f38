#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class CardButton;
class ProviderCard;
class RefreshFooter;
class TrendCard;

/// The first tab: the invitation to grant access, one card for each provider, the trend and the state of the refresh.
class OverviewView : public TabView {
    Q_OBJECT

public:
    explicit OverviewView(QWidget* parent = nullptr);
    ~OverviewView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    [[nodiscard]] CardButton* makeInvitation();
    [[nodiscard]] CardButton* makeTrendButton();
    void setCards(const UsageSnapshot& snapshot);
    void makeCards(const std::vector<ProviderState>& states);

    CardButton* m_invitation;
    QVBoxLayout* m_cardColumn;
    std::vector<std::unique_ptr<ProviderCard>> m_cards; ///< owned here: the list of states may change
    TrendCard* m_trend = nullptr;
    RefreshFooter* m_footer = nullptr;
};

} // namespace tallyfox
