#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QStringList>

class QLocale;

namespace tallyfox {

/// The lines of figures in the status item's menu: the combined percentage with its reset, empty without a quota; then
/// one for each assistant.
QStringList menuFigures(const UsageSnapshot& snapshot, const QLocale& locale);

} // namespace tallyfox
