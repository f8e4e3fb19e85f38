#pragma once

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Engine/Store/ProviderState.h"

#include <span>

class QHBoxLayout;

namespace tallyfox {

class TextLabel;

/// Three sums side by side: the tokens of today, of 30 days, and what these might have cost.
class DashboardSummary : public Card {
    Q_OBJECT

public:
    static constexpr int dividerHeight = 34;

    explicit DashboardSummary(QWidget* parent = nullptr);

    void setStates(std::span<const ProviderState> states);

private:
    TextLabel* addFigure(QHBoxLayout& row, const QString& title);
    void addDivider(QHBoxLayout& row);

    TextLabel* m_today;
    TextLabel* m_total;
    TextLabel* m_cost;
};

} // namespace tallyfox
