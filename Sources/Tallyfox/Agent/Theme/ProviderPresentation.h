#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <QColor>

#include <string_view>

namespace tallyfox {

/// "Claude" or "Codex": the name a provider goes by in every view. A product's name, so it is never translated; it
/// is also the key of its series in the charts.
std::string_view providerTitle(Provider provider);

/// The symbol on a provider's tile.
Symbol providerSymbol(Provider provider);

/// The colour of a provider's symbol, bar and series.
const QColor& providerColor(Provider provider);

} // namespace tallyfox
