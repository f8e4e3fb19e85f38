#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <QColor>
#include <QString>

#include <array>
#include <optional>

class QLocale;

namespace tallyfox {

/// Everything that a provider's card shows.
struct ProviderCardModel {
    struct Badge {
        QString text{};
        QColor color{};

        friend bool operator==(const Badge&, const Badge&) = default;
    };

    struct Metric {
        QString title{};
        QString value{};

        friend bool operator==(const Metric&, const Metric&) = default;
    };

    struct Weekly {
        QString used{};
        QString reset{}; ///< empty when the window does not say

        friend bool operator==(const Weekly&, const Weekly&) = default;
    };

    struct Quota {
        double usedPercent = 0; ///< of the primary window, as delivered
        QString accessibleName{}; ///< of the bar
        std::optional<Weekly> weekly{};

        friend bool operator==(const Quota&, const Quota&) = default;
    };

    QString title{};
    QString subtitle{};
    Badge health{};
    Badge confidence{};
    QString figure{}; ///< the large one
    QString figureCaption{}; ///< beside it
    QString note{}; ///< when the quota resets, else where the figure comes from
    std::optional<Quota> quota{}; ///< without one, the card tells local usage
    std::array<Metric, 3> metrics{};

    friend bool operator==(const ProviderCardModel&, const ProviderCardModel&) = default;
};

/// How sure the shown figures are: as sure as the quota; without one observed where there are tokens, else unknown.
MeasurementConfidence displayConfidence(const ProviderState& state);

/// The card of `state`. Resets are told from `now`, numbers and times as `locale` writes them.
ProviderCardModel providerCardModel(const ProviderState& state, Instant now, const QLocale& locale);

} // namespace tallyfox
