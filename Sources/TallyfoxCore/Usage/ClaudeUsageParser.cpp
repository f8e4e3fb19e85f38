#include "TallyfoxCore/Usage/ClaudeUsageParser.h"

#include "TallyfoxCore/Json/JsonRecordReader.h"
#include "TallyfoxCore/Time/Iso8601.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <memory_resource>
#include <span>
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
    std::string storage;
    return std::string(message.model.value.decoded(storage));
}

/// Appends the samples of one file, at most one for each key.
class KeyedSamples {
public:
    KeyedSamples(const HistoryLines& lines, std::vector<UsageSample>& samples)
        : m_lineCounter(lines)
        , m_samples(samples)
        , m_begin(samples.size())
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
        const bool hasId = message.id.isPresent();
        UsageSample* const place = placeFor(hasId ? keyOf(message.id.value) : keyOf(rawTimestamp, line), sample);
        if (place == nullptr)
            return;
        *place = sample;
        place->model = modelOf(message);
    }

    void sort()
    {
        const auto added = std::span(m_samples).subspan(m_begin);
        if (!std::ranges::is_sorted(added, {}, &UsageSample::timestamp))
            std::ranges::stable_sort(added, {}, &UsageSample::timestamp);
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
        // Mostly the lines of a message stand one behind the other.
        if (key != m_lastKey || m_lastKey.data() == nullptr) {
            const auto known = m_indexes.find(key);
            if (known == m_indexes.end())
                return newPlaceFor(key, sample);
            m_lastKey = key;
            m_lastIndex = known->second;
        }
        UsageSample& kept = m_samples[m_lastIndex];
        return sample.totalTokens > kept.totalTokens ? &kept : nullptr;
    }

    UsageSample* newPlaceFor(std::string_view key, const UsageSample& sample)
    {
        if (sample.totalTokens < 0)
            return nullptr;
        m_lastKey = key;
        m_lastIndex = m_samples.size();
        m_indexes.emplace(key, m_lastIndex);
        return &m_samples.emplace_back();
    }

    LineCounter m_lineCounter;
    std::array<std::byte, 32'768> m_firstMemory;
    std::pmr::monotonic_buffer_resource m_memory{m_firstMemory.data(), m_firstMemory.size()};
    std::deque<std::string> m_ownedKeys;
    std::pmr::unordered_map<std::string_view, std::size_t> m_indexes{&m_memory};
    std::string_view m_lastKey; ///< of the sample at `m_lastIndex`; null before the first one
    std::size_t m_lastIndex = 0;
    std::vector<UsageSample>& m_samples;
    std::size_t m_begin; ///< of this file's samples
};

class ClaudeParser final : public HistoryParser {
public:
    explicit ClaudeParser(LineSelection selection)
        : m_selection(selection)
    { }

    void parse(const HistoryLines& lines, std::vector<UsageSample>& samples) override
    {
        KeyedSamples keyed(lines, samples);
        forEachLine(lines, m_selection, "usage", [&](std::string_view line) {
            const ClaudeRecord* const record =
                m_selection == LineSelection::all ? m_reader.readAlone(line) : m_reader.read(line);
            if (record != nullptr)
                keyed.add(line, *record);
        });
        keyed.sort();
    }

private:
    LineSelection m_selection;
    JsonRecordReader<ClaudeRecord> m_reader;
};

} // namespace

std::vector<UsageSample> ClaudeUsageParser::parse(const HistoryLines& lines, LineSelection selection)
{
    std::vector<UsageSample> samples;
    make(selection)->parse(lines, samples);
    return samples;
}

std::unique_ptr<HistoryParser> ClaudeUsageParser::make(LineSelection selection)
{
    return std::make_unique<ClaudeParser>(selection);
}

} // namespace tallyfox
