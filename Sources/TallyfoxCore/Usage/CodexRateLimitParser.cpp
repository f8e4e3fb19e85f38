#include "TallyfoxCore/Usage/CodexRateLimitParser.h"

#include "TallyfoxCore/Json/JsonFields.h"
#include "TallyfoxCore/Json/Utf8.h"

namespace tallyfox {

namespace {

struct CodexRateWindow {
    DoubleField usedPercent;
    IntegerField windowDurationMins;
    DoubleField resetsAt;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("usedPercent", &CodexRateWindow::usedPercent),
                          optionalMember("windowDurationMins", &CodexRateWindow::windowDurationMins),
                          optionalMember("resetsAt", &CodexRateWindow::resetsAt)};
    }
};

struct CodexRateLimits {
    ObjectField<CodexRateWindow> primary;
    ObjectField<CodexRateWindow> secondary;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("primary", &CodexRateLimits::primary),
                          optionalMember("secondary", &CodexRateLimits::secondary)};
    }
};

struct CodexResult {
    ObjectField<CodexRateLimits> rateLimits;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("rateLimits", &CodexResult::rateLimits)};
    }
};

struct CodexEnvelope {
    ObjectField<CodexResult> result;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("result", &CodexEnvelope::result)};
    }
};

struct IdentifiedReply {
    IntegerField id;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("id", &IdentifiedReply::id)};
    }
};

QuotaWindow windowOf(const CodexRateWindow& window)
{
    QuotaWindow result;
    result.usedPercent = window.usedPercent.value;
    if (window.resetsAt.isPresent())
        result.resetsAt = instantFromUnixSeconds(window.resetsAt.value);
    if (window.windowDurationMins.isPresent())
        result.windowMinutes = window.windowDurationMins.value;
    return result;
}

} // namespace

std::variant<QuotaSnapshot, DecodingError> CodexRateLimitParser::decode(std::string_view reply)
{
    if (!isValidUtf8(reply))
        return DecodingError::malformed;
    JsonReader reader(reply);
    if (reader.nextType() != JsonReader::Type::object)
        return reader.skipValue() && reader.finish() ? DecodingError::wrongType : DecodingError::malformed;
    CodexEnvelope envelope;
    if (!readJsonObject(reply, envelope))
        return DecodingError::malformed;
    if (!hasRightTypes(envelope))
        return DecodingError::wrongType;
    if (!isComplete(envelope))
        return DecodingError::missingKey;
    const CodexRateLimits& limits = envelope.result.record.rateLimits.record;
    QuotaSnapshot snapshot;
    snapshot.provider = Provider::codex;
    snapshot.primary = windowOf(limits.primary.record);
    if (limits.secondary.isPresent())
        snapshot.secondary = windowOf(limits.secondary.record);
    snapshot.confidence = MeasurementConfidence::exact;
    return snapshot;
}

bool CodexRateLimitParser::isReply(std::string_view line, std::int64_t id)
{
    IdentifiedReply reply;
    return readJsonObject(line, reply) && reply.id.isPresent() && reply.id.value == id;
}

} // namespace tallyfox
