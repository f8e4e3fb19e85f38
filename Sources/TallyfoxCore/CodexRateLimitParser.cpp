#include "TallyfoxCore/CodexRateLimitParser.h"

#include "TallyfoxCore/JsonFields.h"
#include "TallyfoxCore/Utf8.h"

namespace tallyfox {

namespace {

struct CodexRateWindow {
    DoubleField usedPercent;
    IntegerField windowDurationMins;
    DoubleField resetsAt;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("usedPercent"))
            usedPercent.read(reader);
        else if (key.equals("windowDurationMins"))
            windowDurationMins.read(reader);
        else if (key.equals("resetsAt"))
            resetsAt.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return usedPercent.isDecodable() && windowDurationMins.isDecodable() && resetsAt.isDecodable();
    }
    [[nodiscard]] bool isComplete() const
    {
        return usedPercent.state == FieldState::present;
    }
};

struct CodexRateLimits {
    ObjectField<CodexRateWindow> primary;
    ObjectField<CodexRateWindow> secondary;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("primary"))
            primary.read(reader);
        else if (key.equals("secondary"))
            secondary.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return primary.isDecodable() && secondary.isDecodable();
    }
    [[nodiscard]] bool isComplete() const
    {
        return primary.isPresent() && primary.members.isComplete()
            && (!secondary.isPresent() || secondary.members.isComplete());
    }
};

struct CodexResult {
    ObjectField<CodexRateLimits> rateLimits;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        const bool isWanted = key.equals("rateLimits");
        if (isWanted)
            rateLimits.read(reader);
        return isWanted;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return rateLimits.isDecodable();
    }
};

struct CodexEnvelope {
    ObjectField<CodexResult> result;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        const bool isWanted = key.equals("result");
        if (isWanted)
            result.read(reader);
        return isWanted;
    }
    [[nodiscard]] bool isComplete() const
    {
        return result.isPresent() && result.members.rateLimits.isPresent()
            && result.members.rateLimits.members.isComplete();
    }
};

struct IdentifiedReply {
    IntegerField id;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        const bool isWanted = key.equals("id");
        if (isWanted)
            id.read(reader);
        return isWanted;
    }
};

QuotaWindow windowOf(const CodexRateWindow& window)
{
    QuotaWindow result;
    result.usedPercent = window.usedPercent.value;
    if (window.resetsAt.state == FieldState::present)
        result.resetsAt = instantFromUnixSeconds(window.resetsAt.value);
    if (window.windowDurationMins.state == FieldState::present)
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
    if (!envelope.result.isDecodable())
        return DecodingError::wrongType;
    if (!envelope.isComplete())
        return DecodingError::missingKey;
    const CodexRateLimits& limits = envelope.result.members.rateLimits.members;
    QuotaSnapshot snapshot;
    snapshot.provider = Provider::codex;
    snapshot.primary = windowOf(limits.primary.members);
    if (limits.secondary.isPresent())
        snapshot.secondary = windowOf(limits.secondary.members);
    snapshot.confidence = MeasurementConfidence::exact;
    return snapshot;
}

bool CodexRateLimitParser::isReply(std::string_view line, std::int64_t id)
{
    IdentifiedReply reply;
    return readJsonObject(line, reply) && reply.id.state == FieldState::present && reply.id.value == id;
}

} // namespace tallyfox
