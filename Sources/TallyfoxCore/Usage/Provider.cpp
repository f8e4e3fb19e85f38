#include "TallyfoxCore/Usage/Provider.h"

namespace tallyfox {

std::string_view rawValue(Provider provider)
{
    return provider == Provider::claude ? "claude" : "codex";
}

std::optional<Provider> providerFromRawValue(std::string_view text)
{
    for (const Provider provider : allProviders) {
        if (rawValue(provider) == text)
            return provider;
    }
    return std::nullopt;
}

std::string_view rawValue(MeasurementConfidence confidence)
{
    switch (confidence) {
    case MeasurementConfidence::exact:
        return "exact";
    case MeasurementConfidence::observed:
        return "observed";
    case MeasurementConfidence::estimated:
        return "estimated";
    case MeasurementConfidence::unknown:
        break;
    }
    return "unknown";
}

std::optional<MeasurementConfidence> measurementConfidenceFromRawValue(std::string_view text)
{
    using enum MeasurementConfidence;
    for (const MeasurementConfidence confidence : {exact, observed, estimated, unknown}) {
        if (rawValue(confidence) == text)
            return confidence;
    }
    return std::nullopt;
}

} // namespace tallyfox
