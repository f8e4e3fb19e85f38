#pragma once

#include "Tallyfox/Agent/Popover/PopoverTab.h"

#include <memory>

namespace tallyfox {

class TabView;

/// A new view for `tab`, with everything it remembers as it is at first.
std::unique_ptr<TabView> makeTabView(PopoverTab tab);

} // namespace tallyfox
