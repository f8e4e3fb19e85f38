#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <QWidget>

#include <vector>

namespace tallyfox {

class LineChart;

/// The last 30 days of each provider at a glance: a line for each, in a card of its own chrome. Takes no clicks: they
/// go to whatever it stands in.
class TrendCard : public QWidget {
    Q_OBJECT

public:
    explicit TrendCard(QWidget* parent = nullptr);

    /// Draws `states`; `calendar` names their days.
    void setStates(const std::vector<ProviderState>& states, const Calendar& calendar);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    LineChart* m_chart;
};

} // namespace tallyfox
