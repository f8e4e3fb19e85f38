#include "TallyfoxCore/CodexUsageParser.h"

#include "TallyfoxCore/Iso8601.h"
#include "TallyfoxCore/JsonFields.h"
#include "TallyfoxCore/TokenSum.h"

namespace tallyfox {

namespace {

struct CodexTokenUsage {
    IntegerField inputTokens;
    IntegerField cachedInputTokens;
    IntegerField outputTokens;
    IntegerField reasoningOutputTokens;
    IntegerField totalTokens;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        IntegerField* const field = fieldFor(key);
        if (field != nullptr)
            field->read(reader);
        return field != nullptr;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return inputTokens.isDecodable() && cachedInputTokens.isDecodable() && outputTokens.isDecodable()
            && reasoningOutputTokens.isDecodable() && totalTokens.isDecodable();
    }

private:
    IntegerField* fieldFor(const JsonString& key)
    {
        if (key.equals("input_tokens"))
            return &inputTokens;
        if (key.equals("cached_input_tokens"))
            return &cachedInputTokens;
        if (key.equals("output_tokens"))
            return &outputTokens;
        if (key.equals("reasoning_output_tokens"))
            return &reasoningOutputTokens;
        return key.equals("total_tokens") ? &totalTokens : nullptr;
    }
};

struct CodexInfo {
    ObjectField<CodexTokenUsage> lastTokenUsage;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        const bool isWanted = key.equals("last_token_usage");
        if (isWanted)
            lastTokenUsage.read(reader);
        return isWanted;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return lastTokenUsage.isDecodable();
    }
};

struct CodexPayload {
    StringField type;
    ObjectField<CodexInfo> info;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("type"))
            type.read(reader);
        else if (key.equals("info"))
            info.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return type.state == FieldState::present && info.isDecodable();
    }
};

struct CodexRecord {
    StringField timestamp;
    StringField type;
    ObjectField<CodexPayload> payload;

    bool readMember(const JsonString& key, JsonReader& reader)
    {
        if (key.equals("timestamp"))
            timestamp.read(reader);
        else if (key.equals("type"))
            type.read(reader);
        else if (key.equals("payload"))
            payload.read(reader);
        else
            return false;
        return true;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return timestamp.state == FieldState::present && type.state == FieldState::present && payload.isPresent()
            && payload.isDecodable();
    }
    [[nodiscard]] bool hasTokenCount() const
    {
        const CodexPayload& event = payload.members;
        return type.value.equals("event_msg") && event.type.value.equals("token_count") && event.info.isPresent()
            && event.info.members.lastTokenUsage.isPresent();
    }
};

std::optional<UsageSample> sampleOf(std::string_view line)
{
    CodexRecord record;
    if (!readJsonObject(line, record) || !record.isDecodable() || !record.hasTokenCount())
        return std::nullopt;
    std::string storage;
    const auto timestamp = parseISO8601(record.timestamp.value.decoded(storage));
    if (!timestamp)
        return std::nullopt;
    const CodexTokenUsage& usage = record.payload.members.info.members.lastTokenUsage.members;
    UsageSample sample;
    sample.provider = Provider::codex;
    sample.timestamp = *timestamp;
    sample.inputTokens = usage.inputTokens.valueOr(0);
    sample.outputTokens = usage.outputTokens.valueOr(0);
    sample.cachedInputTokens = usage.cachedInputTokens.valueOr(0);
    sample.reasoningTokens = usage.reasoningOutputTokens.valueOr(0);
    // The reported total wins even over its parts; cached and reasoning tokens are shares of the other two.
    sample.totalTokens = usage.totalTokens.state == FieldState::present
        ? usage.totalTokens.value
        : tokenSum(sample.inputTokens, sample.outputTokens);
    sample.confidence = MeasurementConfidence::observed;
    return sample;
}

} // namespace

std::vector<UsageSample> CodexUsageParser::parse(const HistoryLines& lines, LineSelection selection)
{
    std::vector<UsageSample> samples;
    forEachLine(lines, selection, "last_token_usage", [&samples](std::string_view line) {
        if (auto sample = sampleOf(line))
            samples.push_back(std::move(*sample));
    });
    return samples;
}

} // namespace tallyfox
