#pragma once

#include "Tallyfox/Engine/Store/ProviderState.h"

#include <QColor>
#include <QString>

#include <array>
#include <optional>

class QLocale;

namespace tallyfox {

/// The texts and values of a provider's card.
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
        QString reset{}; ///< empty if not reported

        friend bool operator==(const Weekly&, const Weekly&) = default;
    };

    struct Quota {
        double usedPercent = 0; ///< of the primary window, unchanged
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
    QString note{}; ///< when the quota resets, or else where the figure comes from
    std::optional<Quota> quota{}; ///< without one, the card shows local usage
    std::array<Metric, 3> metrics{};

    friend bool operator==(const ProviderCardModel&, const ProviderCardModel&) = default;
};

/// The confidence of the shown figures: that of the quota; without one, `observed` if there are tokens, otherwise
/// `unknown`.
MeasurementConfidence displayConfidence(const ProviderState& state);

/// When the quota is reset: "Resets in 2 hr.", relative to `now`.
QString resetText(const QuotaWindow& window, Instant now, const QLocale& locale);

/// The card of `state`, with reset times relative to `now`, and numbers and times formatted for `locale`.
ProviderCardModel providerCardModel(const ProviderState& state, Instant now, const QLocale& locale);

} // namespace tallyfox
