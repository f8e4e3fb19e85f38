#pragma once

namespace tallyfox {

/// Whether the desktop draws windows one through another now, so that one can fade in. Main thread.
bool desktopComposes();

} // namespace tallyfox
