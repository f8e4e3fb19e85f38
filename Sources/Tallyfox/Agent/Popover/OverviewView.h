#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class CardButton;
class LineChart;
class ProviderCard;
class RefreshFooter;

/// A card with a line chart of the last 30 days of each provider. It leaves clicks to its parent.
class TrendCard : public QWidget {
    Q_OBJECT

public:
    explicit TrendCard(QWidget* parent = nullptr);

    /// Shows `states`; `calendar` gives the dates of their days.
    void setStates(const std::vector<ProviderState>& states, const Calendar& calendar);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    LineChart* m_chart;
};

/// The first tab: the request for access, a card for each provider, the trend, and the state of the refresh.
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
