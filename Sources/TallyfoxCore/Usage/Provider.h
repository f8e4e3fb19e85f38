#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tallyfox {

class HistoryLines;
enum class LineSelection;
struct UsageSample;

/// The assistant a measurement came from.
enum class Provider { claude, codex };

/// In the order in which states are kept and shown, which is that of the enumerators.
inline constexpr std::array allProviders{Provider::claude, Provider::codex};

/// "claude" or "codex": the provider's name in stored and printed data.
constexpr std::string_view rawValue(Provider provider)
{
    switch (provider) {
    case Provider::claude:
        return "claude";
    case Provider::codex:
        return "codex";
    }
    return {};
}

// The switch above does not compile without every enumerator, so the first number without a name is their count.
static_assert(rawValue(static_cast<Provider>(allProviders.size())).empty(), "allProviders lacks an enumerator");

/// Whether `rows` has one row for each provider, in the order of `allProviders`. Every table of providers asserts it.
template <typename Row, std::size_t count> constexpr bool hasRowOfEachProvider(const std::array<Row, count>& rows)
{
    if (count != allProviders.size())
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (rows[i].provider != allProviders[i] || static_cast<std::size_t>(allProviders[i]) != i)
            return false;
    }
    return true;
}

/// What sets one provider apart. No member has a default: a row with a missing cell does not compile.
struct ProviderTraits {
    Provider provider;
    std::string_view title; ///< in every view and print-out; a product's name, so never translated
    std::string_view historyFolder; ///< relative to the home folder
    std::vector<UsageSample> (*parse)(const HistoryLines& lines, LineSelection selection); ///< of one of its files
    bool hasQuota; ///< whether a refresh fetches one
};

const ProviderTraits& traitsOf(Provider provider);

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
