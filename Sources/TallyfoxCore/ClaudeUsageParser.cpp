#include "TallyfoxCore/ClaudeUsageParser.h"

#include "TallyfoxCore/Iso8601.h"
#include "TallyfoxCore/JsonFields.h"
#include "TallyfoxCore/TokenSum.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <memory_resource>
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

/// The counts of a message; its model is told by `modelOf`.
UsageSample sampleOf(const ClaudeUsage& usage, Instant timestamp)
{
    UsageSample sample;
    sample.provider = Provider::claude;
    sample.timestamp = timestamp;
    sample.inputTokens = usage.inputTokens.valueOr(0);
    sample.outputTokens = usage.outputTokens.valueOr(0);
    sample.cachedInputTokens = usage.cacheReadInputTokens.valueOr(0);
    // Tokens that create a cache entry are paid for, so they count in the total, but nothing was served from the cache.
    sample.totalTokens = tokenSum(tokenSum(tokenSum(sample.inputTokens, sample.outputTokens), sample.cachedInputTokens),
                                  usage.cacheCreationInputTokens.valueOr(0));
    sample.confidence = MeasurementConfidence::observed;
    return sample;
}

std::optional<std::string> modelOf(const ClaudeMessage& message)
{
    if (!message.model.isPresent())
        return std::nullopt;
    return message.model.value.decoded();
}

/// The samples of one file, at most one for each key.
class KeyedSamples {
public:
    explicit KeyedSamples(const HistoryLines& lines)
        : m_lineCounter(lines)
    { }

    void add(std::string_view line)
    {
        ClaudeRecord record;
        if (!readJsonObject(line, record) || !hasRightTypes(record) || !isComplete(record)
            || !record.hasAssistantUsage())
            return;
        std::string storage;
        const std::string_view rawTimestamp = record.timestamp.value.decoded(storage);
        const auto timestamp = parseISO8601(rawTimestamp);
        if (!timestamp)
            return;
        const ClaudeMessage& message = record.message.record;
        const UsageSample sample = sampleOf(message.usage.record, *timestamp);
        const bool hasId = message.id.isPresent();
        UsageSample* const place = placeFor(hasId ? keyOf(message.id.value) : keyOf(rawTimestamp, line), sample);
        if (place == nullptr)
            return;
        *place = sample;
        place->model = modelOf(message);
    }

    std::vector<UsageSample> takeSorted()
    {
        std::ranges::stable_sort(m_samples, {}, &UsageSample::timestamp);
        return std::move(m_samples);
    }

private:
    std::string_view keyOf(const JsonString& id)
    {
        std::string storage;
        const std::string_view key = id.decoded(storage);
        return key.data() == id.raw.data() ? key : std::string_view(m_ownedKeys.emplace_back(std::move(storage)));
    }

    /// The key of a record without an id: its timestamp and its place in the file, which no other record shares.
    std::string_view keyOf(std::string_view rawTimestamp, std::string_view line)
    {
        return m_ownedKeys.emplace_back(std::string(rawTimestamp) + '-' + std::to_string(m_lineCounter.indexOf(line)));
    }

    /// Where the sample is to be kept; null when the key has one at least as large, or as its first a negative one.
    UsageSample* placeFor(std::string_view key, const UsageSample& sample)
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
    std::array<std::byte, 32'768> m_firstMemory;
    std::pmr::monotonic_buffer_resource m_memory{m_firstMemory.data(), m_firstMemory.size()};
    std::deque<std::string> m_ownedKeys;
    std::pmr::unordered_map<std::string_view, std::size_t> m_indexes{&m_memory};
    std::vector<UsageSample> m_samples;
};

} // namespace

std::vector<UsageSample> ClaudeUsageParser::parse(const HistoryLines& lines, LineSelection selection)
{
    KeyedSamples samples(lines);
    forEachLine(lines, selection, "usage", [&samples](std::string_view line) { samples.add(line); });
    return samples.takeSorted();
}

} // namespace tallyfox
