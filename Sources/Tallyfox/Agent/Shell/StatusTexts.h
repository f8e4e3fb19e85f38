#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QStringList>

#include <string>
#include <string_view>

class QLocale;

namespace tallyfox {

/// The lines of figures in the status item's menu: the combined percentage with its reset, empty without a quota; then
/// one for each assistant.
QStringList menuFigures(const UsageSnapshot& snapshot, const QLocale& locale);

/// What to say where nothing shows the status item: what the user can install, by the `:`-separated names of the
/// desktop in XDG_CURRENT_DESKTOP, and how to open the window without it.
std::string missingStatusAreaText(std::string_view desktopNames);

} // namespace tallyfox
