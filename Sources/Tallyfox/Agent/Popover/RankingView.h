#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>

namespace tallyfox {

/// The third tab: the user's own total for a board. No ranking server exists; its buttons do nothing.
class RankingView : public TabView {
    Q_OBJECT

public:
    explicit RankingView(QWidget* parent = nullptr);
    ~RankingView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
