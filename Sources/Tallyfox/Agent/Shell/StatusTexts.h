#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QStringList>

#include <string>
#include <string_view>

class QLocale;

namespace tallyfox {

/// The lines of figures in the status item's menu: the combined percentage, empty without a quota, with its reset if
/// `hasReset`; then one for each assistant. Only the reset needs the library of dates, which takes megabytes.
QStringList menuFigures(const UsageSnapshot& snapshot, const QLocale& locale, bool hasReset);

/// What to say where nothing shows the status item: what the user can install, by the `:`-separated names of the
/// desktop in XDG_CURRENT_DESKTOP, and how to open the window without it.
std::string missingStatusAreaText(std::string_view desktopNames);

} // namespace tallyfox
