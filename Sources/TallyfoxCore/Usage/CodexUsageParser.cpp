#include "TallyfoxCore/Usage/CodexUsageParser.h"

#include "TallyfoxCore/Json/JsonFields.h"
#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Usage/TokenSum.h"

namespace tallyfox {

namespace {

struct CodexTokenUsage {
    IntegerField inputTokens;
    IntegerField cachedInputTokens;
    IntegerField outputTokens;
    IntegerField reasoningOutputTokens;
    IntegerField totalTokens;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("input_tokens", &CodexTokenUsage::inputTokens),
                          optionalMember("cached_input_tokens", &CodexTokenUsage::cachedInputTokens),
                          optionalMember("output_tokens", &CodexTokenUsage::outputTokens),
                          optionalMember("reasoning_output_tokens", &CodexTokenUsage::reasoningOutputTokens),
                          optionalMember("total_tokens", &CodexTokenUsage::totalTokens)};
    }
};

struct CodexInfo {
    ObjectField<CodexTokenUsage> lastTokenUsage;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("last_token_usage", &CodexInfo::lastTokenUsage)};
    }
};

struct CodexPayload {
    StringField type;
    ObjectField<CodexInfo> info;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("type", &CodexPayload::type), optionalMember("info", &CodexPayload::info)};
    }
};

struct CodexRecord {
    StringField timestamp;
    StringField type;
    ObjectField<CodexPayload> payload;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("timestamp", &CodexRecord::timestamp),
                          requiredMember("type", &CodexRecord::type), requiredMember("payload", &CodexRecord::payload)};
    }
    [[nodiscard]] bool hasTokenCount() const
    {
        const CodexPayload& event = payload.record;
        return type.value.equals("event_msg") && event.type.value.equals("token_count") && event.info.isPresent()
            && event.info.record.lastTokenUsage.isPresent();
    }
};

std::optional<UsageSample> sampleOf(const CodexRecord& record)
{
    if (!hasRightTypes(record) || !isComplete(record) || !record.hasTokenCount())
        return std::nullopt;
    std::string storage;
    const auto timestamp = parseISO8601(record.timestamp.value.decoded(storage));
    if (!timestamp)
        return std::nullopt;
    const CodexTokenUsage& usage = record.payload.record.info.record.lastTokenUsage.record;
    UsageSample sample;
    sample.provider = Provider::codex;
    sample.timestamp = *timestamp;
    sample.inputTokens = usage.inputTokens.valueOr(0);
    sample.outputTokens = usage.outputTokens.valueOr(0);
    sample.cachedInputTokens = usage.cachedInputTokens.valueOr(0);
    sample.reasoningTokens = usage.reasoningOutputTokens.valueOr(0);
    // The reported total wins, even over its parts; cached and reasoning tokens are parts of the other two.
    sample.totalTokens =
        usage.totalTokens.isPresent() ? usage.totalTokens.value : tokenSum(sample.inputTokens, sample.outputTokens);
    sample.confidence = MeasurementConfidence::observed;
    return sample;
}

} // namespace

std::vector<UsageSample> CodexUsageParser::parse(const HistoryLines& lines, LineSelection selection)
{
    std::vector<UsageSample> samples;
    forEachLine(lines, selection, "last_token_usage", [&](std::string_view line) {
        CodexRecord record;
        if (!readJsonObject(line, record))
            return;
        if (const auto sample = sampleOf(record))
            samples.push_back(*sample);
    });
    return samples;
}

} // namespace tallyfox
