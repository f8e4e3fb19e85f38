#pragma once

namespace tallyfox {

/// Lets a screen reader know the settings window as a window, and which of its tabs is chosen: the toolkit says
/// neither. Once per process, before the first window; more do no harm.
void installAccessibleSettings();

} // namespace tallyfox
