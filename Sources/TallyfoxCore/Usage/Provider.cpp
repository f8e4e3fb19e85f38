#include "TallyfoxCore/Usage/Provider.h"

#include "TallyfoxCore/Usage/ClaudeUsageParser.h"
#include "TallyfoxCore/Usage/CodexUsageParser.h"

namespace tallyfox {

namespace {

constexpr std::array traits{
    ProviderTraits{
        .provider = Provider::claude,
        .title = "Claude",
        .historyFolder = ".claude/projects",
        .parse = ClaudeUsageParser::parse,
        .hasQuota = false,
    },
    ProviderTraits{
        .provider = Provider::codex,
        .title = "Codex",
        .historyFolder = ".codex/sessions",
        .parse = CodexUsageParser::parse,
        .hasQuota = true,
    },
};
static_assert(hasRowOfEachProvider(traits), "a provider has no row, or not at its place");

} // namespace

const ProviderTraits& traitsOf(Provider provider)
{
    return traits.at(static_cast<std::size_t>(provider));
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
