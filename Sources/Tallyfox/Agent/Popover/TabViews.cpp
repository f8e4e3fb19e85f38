#include "Tallyfox/Agent/Popover/TabViews.h"

#include "Tallyfox/Agent/Popover/DashboardView.h"
#include "Tallyfox/Agent/Popover/OverviewView.h"
#include "Tallyfox/Agent/Popover/RankingView.h"
#include "Tallyfox/Agent/Popover/ServicesView.h"

namespace tallyfox {

std::unique_ptr<TabView> makeTabView(PopoverTab tab)
{
    switch (tab) {
    case PopoverTab::dashboard:
        return std::make_unique<DashboardView>();
    case PopoverTab::ranking:
        return std::make_unique<RankingView>();
    case PopoverTab::services:
        return std::make_unique<ServicesView>();
    case PopoverTab::overview:
        break;
    }
    return std::make_unique<OverviewView>();
}

} // namespace tallyfox
