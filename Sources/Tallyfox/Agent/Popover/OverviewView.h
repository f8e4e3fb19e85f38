#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>

namespace tallyfox {

/// The first tab: the invitation to grant access, one card for each provider, the trend and the state of the refresh.
class OverviewView : public TabView {
    Q_OBJECT

public:
    explicit OverviewView(QWidget* parent = nullptr);
    ~OverviewView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
