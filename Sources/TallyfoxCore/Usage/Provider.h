#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tallyfox {

/// The assistant a measurement came from. `allProviders` fixes the order in which states are kept and shown.
enum class Provider { claude, codex };

inline constexpr std::array<Provider, 2> allProviders{Provider::claude, Provider::codex};

/// "claude" or "codex": the text that stands for the provider in stored and printed data.
std::string_view rawValue(Provider provider);

/// The provider whose raw value is exactly `text` (case-sensitive), or nothing.
std::optional<Provider> providerFromRawValue(std::string_view text);

/// How a number was obtained.
enum class MeasurementConfidence {
    exact, ///< reported by the provider itself
    observed, ///< counted from local history
    estimated,
    unknown,
};

/// "exact", "observed", "estimated" or "unknown".
std::string_view rawValue(MeasurementConfidence confidence);

/// The confidence whose raw value is exactly `text` (case-sensitive), or nothing.
std::optional<MeasurementConfidence> measurementConfidenceFromRawValue(std::string_view text);

} // namespace tallyfox
