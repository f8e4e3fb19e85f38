#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Engine/Store/ProviderState.h"
#include "TallyfoxCore/Usage/Provider.h"

#include <QColor>
#include <QString>

#include <array>
#include <cstdint>
#include <span>

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

/// The provider's title (ProviderTraits) as a QString.
QString providerTitle(Provider provider);

/// A service as the Services tab shows it.
struct ServiceRow {
    QString name{};
    Symbol symbol = Symbol::stars;
    QString detail{}; ///< the line under the name
    QString status{}; ///< the label at the right
    QColor statusColor{};

    friend bool operator==(const ServiceRow&, const ServiceRow&) = default;
};

/// The row of a provider.
ServiceRow serviceRow(const ProviderState& state);

/// The services that are announced but not supported yet: Gemini and Windsurf.
std::array<ServiceRow, 2> stagedServiceRows();

/// The number of connected states; stale ones do not count.
std::int64_t connectedCount(std::span<const ProviderState> states);

/// The colour of the label of a health.
const QColor& healthColor(SourceHealth health);

} // namespace tallyfox
