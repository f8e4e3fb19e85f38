#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>

namespace tallyfox {

/// The second tab: three sums, the tokens of each day over a range, and the year as a heat map.
class DashboardView : public TabView {
    Q_OBJECT

public:
    explicit DashboardView(QWidget* parent = nullptr);
    ~DashboardView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
