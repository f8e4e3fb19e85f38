#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <QColor>
#include <QString>

namespace tallyfox {

struct Preferences;

/// How the views show one provider. No member has a default: a row with a missing cell does not compile.
struct ProviderPresentation {
    Provider provider;
    QLatin1String subtitle; ///< on the card, under the title; a product's name, so never translated
    Symbol symbol; ///< on its tile
    const QColor& (*color)(); ///< of its symbol, bar and series
    double Preferences::*threshold; ///< of its usage alert
};

const ProviderPresentation& presentationOf(Provider provider);

/// The provider's title (ProviderTraits) as views need it.
QString providerTitle(Provider provider);

} // namespace tallyfox
