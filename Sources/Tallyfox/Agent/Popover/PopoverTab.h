#pragma once

#include <QtGlobal>

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
        return QT_TRANSLATE_NOOP("PopoverTab", "Overview");
    case PopoverTab::dashboard:
        return QT_TRANSLATE_NOOP("PopoverTab", "Dashboard");
    case PopoverTab::ranking:
        return QT_TRANSLATE_NOOP("PopoverTab", "Ranking");
    case PopoverTab::services:
        return QT_TRANSLATE_NOOP("PopoverTab", "Services");
    }
    return "";
}

} // namespace tallyfox
