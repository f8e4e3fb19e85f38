#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Engine/Store/ProviderState.h"

#include <QColor>
#include <QString>

#include <array>
#include <cstdint>
#include <span>

namespace tallyfox {

/// One service of the Services tab, as it is shown.
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

/// The services that are announced and not yet supported: Gemini, then Windsurf.
std::array<ServiceRow, 2> stagedServiceRows();

/// How many states are connected; stale ones are not.
std::int64_t connectedCount(std::span<const ProviderState> states);

/// The colour of a health's label.
const QColor& healthColor(SourceHealth health);

} // namespace tallyfox
