#pragma once

#include <array>

namespace tallyfox {

/// The tabs of the popover, in the order of the picker.
enum class PopoverTab { overview, dashboard, ranking, services };

inline constexpr std::array allPopoverTabs{PopoverTab::overview, PopoverTab::dashboard, PopoverTab::ranking,
                                           PopoverTab::services};

/// "Overview", "Dashboard", "Ranking" or "Services": also the label of its segment, before translation.
constexpr const char* rawValue(PopoverTab tab)
{
    switch (tab) {
    case PopoverTab::overview:
        return "Overview";
    case PopoverTab::dashboard:
        return "Dashboard";
    case PopoverTab::ranking:
        return "Ranking";
    case PopoverTab::services:
        return "Services";
    }
    return "";
}

} // namespace tallyfox
