#include "TallyfoxCore/Usage/ClaudeUsageParser.h"

#include "TallyfoxCore/Json/JsonFields.h"
#include "TallyfoxCore/Time/Instant.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>

namespace tallyfox {

namespace {

struct ClaudeUsage {
    IntegerField inputTokens;
    IntegerField outputTokens;
    IntegerField cacheReadInputTokens;
    IntegerField cacheCreationInputTokens;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("input_tokens", &ClaudeUsage::inputTokens),
                          optionalMember("output_tokens", &ClaudeUsage::outputTokens),
                          optionalMember("cache_read_input_tokens", &ClaudeUsage::cacheReadInputTokens),
                          optionalMember("cache_creation_input_tokens", &ClaudeUsage::cacheCreationInputTokens)};
    }
};

struct ClaudeMessage {
    StringField id;
    StringField model;
    ObjectField<ClaudeUsage> usage;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("id", &ClaudeMessage::id), optionalMember("model", &ClaudeMessage::model),
                          optionalMember("usage", &ClaudeMessage::usage)};
    }
};

struct ClaudeRecord {
    StringField timestamp;
    StringField type;
    ObjectField<ClaudeMessage> message;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("timestamp", &ClaudeRecord::timestamp),
                          requiredMember("type", &ClaudeRecord::type),
                          optionalMember("message", &ClaudeRecord::message)};
    }
    [[nodiscard]] bool hasAssistantUsage() const
    {
        return type.value.equals("assistant") && message.isPresent() && message.record.usage.isPresent();
    }
};

/// The sample of a message, without its model.
UsageSample sampleOf(const ClaudeUsage& usage, Instant timestamp)
{
    UsageSample sample;
    sample.provider = Provider::claude;
    sample.timestamp = timestamp;
    sample.inputTokens = usage.inputTokens.valueOr(0);
    sample.outputTokens = usage.outputTokens.valueOr(0);
    sample.cachedInputTokens = usage.cacheReadInputTokens.valueOr(0);
    // Tokens that create a cache entry are paid for, so they count in the total, but were not served from the cache.
    sample.totalTokens = tokenSum(tokenSum(tokenSum(sample.inputTokens, sample.outputTokens), sample.cachedInputTokens),
                                  usage.cacheCreationInputTokens.valueOr(0));
    sample.confidence = MeasurementConfidence::observed;
    return sample;
}

std::optional<std::string> modelOf(const ClaudeMessage& message)
{
    if (!message.model.isPresent())
        return std::nullopt;
    std::string storage;
    return std::string(message.model.value.decoded(storage));
}

/// The samples of one file, at most one for each key.
class KeyedSamples {
public:
    explicit KeyedSamples(const HistoryLines& lines)
        : m_lineCounter(lines)
    { }

    /// Adds what was read of `line`.
    void add(std::string_view line, const ClaudeRecord& record)
    {
        if (!hasRightTypes(record) || !isComplete(record) || !record.hasAssistantUsage())
            return;
        std::string storage;
        const std::string_view rawTimestamp = record.timestamp.value.decoded(storage);
        const auto timestamp = parseISO8601(rawTimestamp);
        if (!timestamp)
            return;
        const ClaudeMessage& message = record.message.record;
        const UsageSample sample = sampleOf(message.usage.record, *timestamp);
        if (UsageSample* const place = placeFor(keyOf(message, rawTimestamp, line), sample)) {
            *place = sample;
            place->model = modelOf(message);
        }
    }

    /// The samples, ascending by time; equal ones in the order of their lines. Call it once, at the end.
    std::vector<UsageSample> takeSorted()
    {
        std::ranges::stable_sort(m_samples, {}, &UsageSample::timestamp);
        return std::move(m_samples);
    }

private:
    /// The message's id. A record without one has its timestamp and its line number, which no other shares.
    std::string keyOf(const ClaudeMessage& message, std::string_view rawTimestamp, std::string_view line)
    {
        if (message.id.isPresent())
            return message.id.value.decoded();
        return std::string(rawTimestamp) + '-' + std::to_string(m_lineCounter.indexOf(line));
    }

    /// Where to keep the sample; null if the key has one at least as large, or if this is its first and negative.
    UsageSample* placeFor(const std::string& key, const UsageSample& sample)
    {
        const auto known = m_indexes.find(key);
        if (known != m_indexes.end()) {
            UsageSample& kept = m_samples[known->second];
            return sample.totalTokens > kept.totalTokens ? &kept : nullptr;
        }
        if (sample.totalTokens < 0)
            return nullptr;
        m_indexes.emplace(key, m_samples.size());
        return &m_samples.emplace_back();
    }

    LineCounter m_lineCounter;
    std::unordered_map<std::string, std::size_t> m_indexes; ///< in the list of samples, by key
    std::vector<UsageSample> m_samples;
};

} // namespace

std::vector<UsageSample> ClaudeUsageParser::parse(const HistoryLines& lines, LineSelection selection)
{
    KeyedSamples keyed(lines);
    forEachLine(lines, selection, "usage", [&](std::string_view line) {
        ClaudeRecord record;
        if (readJsonObject(line, record))
            keyed.add(line, record);
    });
    return keyed.takeSorted();
}

} // namespace tallyfox
