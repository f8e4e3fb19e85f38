#include "UsageOracle.h"

#include "TallyfoxCore/Json/Utf8.h"
#include "TallyfoxCore/Time/Instant.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <rapidjson/document.h>
#include <string_view>

namespace usageOracle {

namespace {

using tallyfox::UsageSample;
using Value = rapidjson::Value;

constexpr unsigned parseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;
constexpr std::size_t longestLine = 1'024; ///< too short to nest deeper than the reader's bound

bool isOfUsualSize(double number)
{
    return std::abs(number) > 1e-300 && std::abs(number) < 1e300;
}

/// Reads one line. Once wrong it stays wrong; anything that the oracle cannot judge makes the verdict unknown.
class Line {
public:
    explicit Line(const std::string& line)
    {
        const std::string text = tallyfox::repairedUtf8(line);
        isKnown = text.size() <= longestLine;
        for (const char* const misread : {"\\ud", "\\uD", "0e", "0E"}) // RapidJSON misreads 0e308
            isKnown &= text.find(misread) == text.npos;
        if (!isKnown || text.find('\0') != text.npos) {
            isUsable = false;
            return;
        }
        m_document.Parse<parseFlags>(text.data(), text.size());
        isKnown = m_document.GetParseError() != rapidjson::kParseErrorNumberTooBig;
        isGrammatical = !m_document.HasParseError();
        isUsable = isGrammatical && m_document.IsObject();
    }

    [[nodiscard]] const Value& root() const
    {
        return m_document;
    }

    /// The last member of that name; null if there is none.
    static const Value* member(const Value* object, const char* key)
    {
        const Value* found = nullptr;
        if (!object)
            return found;
        for (const auto& each : object->GetObject()) {
            if (std::string_view{each.name.GetString(), each.name.GetStringLength()} == key)
                found = each.value.IsNull() ? nullptr : &each.value;
        }
        return found;
    }

    const Value* object(const Value* parent, const char* key)
    {
        const Value* const value = member(parent, key);
        isUsable &= !value || value->IsObject();
        return value && value->IsObject() ? value : nullptr;
    }

    std::optional<std::string> string(const Value* parent, const char* key)
    {
        const Value* const value = member(parent, key);
        isUsable &= !value || value->IsString();
        if (!value || !value->IsString())
            return std::nullopt;
        return std::string{value->GetString(), value->GetStringLength()};
    }

    std::optional<std::int64_t> integer(const Value* parent, const char* key)
    {
        const Value* const value = member(parent, key);
        if (!value)
            return std::nullopt;
        if (value->IsInt64())
            return value->GetInt64();
        isKnown &= !value->IsDouble() || std::trunc(value->GetDouble()) != value->GetDouble();
        isUsable = false;
        return std::nullopt;
    }

    std::optional<double> number(const Value* parent, const char* key)
    {
        const Value* const value = member(parent, key);
        isUsable &= !value || value->IsNumber();
        if (value && value->IsNumber()) // RapidJSON misreads 4e308
            isKnown &= value->GetDouble() == 0 || isOfUsualSize(value->GetDouble());
        return value && value->IsNumber() ? std::optional{value->GetDouble()} : std::nullopt;
    }

    bool isKnown = true;
    bool isGrammatical = false;
    bool isUsable = true; ///< an object in which nothing asked for so far has another type

private:
    rapidjson::Document m_document;
};

/// The sum, step by step; overflow on any step counts.
std::int64_t sum(std::initializer_list<std::int64_t> counts, bool& overflows)
{
    std::int64_t total = 0;
    for (const std::int64_t count : counts)
        overflows |= __builtin_add_overflow(total, count, &total);
    return total;
}

std::optional<tallyfox::Instant> instant(const std::optional<std::string>& text)
{
    return text ? tallyfox::parseISO8601(*text) : std::nullopt;
}

struct ClaudeRecord {
    std::string key;
    UsageSample sample;
};

std::optional<ClaudeRecord> claudeRecord(const std::string& text, std::size_t place, Verdict& verdict)
{
    Line line(text);
    if (!line.isUsable) {
        verdict.isKnown &= line.isKnown;
        return std::nullopt;
    }
    const auto timestamp = line.string(&line.root(), "timestamp");
    const auto type = line.string(&line.root(), "type");
    const Value* const message = line.object(&line.root(), "message");
    const auto id = line.string(message, "id");
    const auto model = line.string(message, "model");
    const Value* const usage = line.object(message, "usage");
    const std::int64_t input = line.integer(usage, "input_tokens").value_or(0);
    const std::int64_t output = line.integer(usage, "output_tokens").value_or(0);
    const std::int64_t cached = line.integer(usage, "cache_read_input_tokens").value_or(0);
    const std::int64_t created = line.integer(usage, "cache_creation_input_tokens").value_or(0);
    verdict.isKnown &= line.isKnown;
    const auto time = instant(timestamp);
    if (!line.isUsable || type != "assistant" || !usage || !time)
        return std::nullopt;
    ClaudeRecord record{id ? *id : *timestamp + '-' + std::to_string(place), {}};
    record.sample = {tallyfox::Provider::claude,
                     *time,
                     model,
                     input,
                     output,
                     cached,
                     0,
                     sum({input, output, cached, created}, verdict.overflows),
                     tallyfox::MeasurementConfidence::observed};
    return record;
}

std::optional<UsageSample> codexSample(const std::string& text, Verdict& verdict)
{
    Line line(text);
    if (!line.isUsable) {
        verdict.isKnown &= line.isKnown;
        return std::nullopt;
    }
    const auto timestamp = line.string(&line.root(), "timestamp");
    const auto type = line.string(&line.root(), "type");
    const Value* const payload = line.object(&line.root(), "payload");
    const auto event = line.string(payload, "type");
    const Value* const usage = line.object(line.object(payload, "info"), "last_token_usage");
    const std::int64_t input = line.integer(usage, "input_tokens").value_or(0);
    const std::int64_t cached = line.integer(usage, "cached_input_tokens").value_or(0);
    const std::int64_t output = line.integer(usage, "output_tokens").value_or(0);
    const std::int64_t reasoning = line.integer(usage, "reasoning_output_tokens").value_or(0);
    const auto total = line.integer(usage, "total_tokens");
    verdict.isKnown &= line.isKnown;
    const auto time = instant(timestamp);
    if (!line.isUsable || type != "event_msg" || event != "token_count" || !usage || !time)
        return std::nullopt;
    return UsageSample{tallyfox::Provider::codex,
                       *time,
                       std::nullopt,
                       input,
                       output,
                       cached,
                       reasoning,
                       total ? *total : sum({input, output}, verdict.overflows),
                       tallyfox::MeasurementConfidence::observed};
}

std::optional<tallyfox::QuotaWindow> quotaWindow(Line& line, const Value* window)
{
    const auto percent = line.number(window, "usedPercent");
    const auto minutes = line.integer(window, "windowDurationMins");
    const auto resetsAt = line.number(window, "resetsAt");
    if (!percent)
        return std::nullopt;
    tallyfox::QuotaWindow found;
    found.usedPercent = *percent;
    found.windowMinutes = minutes;
    if (resetsAt)
        found.resetsAt = tallyfox::instantFromUnixSeconds(*resetsAt);
    return found;
}

} // namespace

Verdict claude(const std::vector<std::string>& lines)
{
    Verdict verdict;
    std::map<std::string, std::size_t> places;
    for (std::size_t place = 0; place < lines.size(); ++place) {
        const auto record = claudeRecord(lines[place], place, verdict);
        if (!record)
            continue;
        const auto known = places.find(record->key);
        if (known == places.end()) {
            if (record->sample.totalTokens < 0)
                continue;
            places[record->key] = verdict.samples.size();
            verdict.samples.push_back(record->sample);
        } else if (record->sample.totalTokens > verdict.samples[known->second].totalTokens) {
            verdict.samples[known->second] = record->sample;
        }
    }
    std::ranges::stable_sort(verdict.samples, {}, &UsageSample::timestamp);
    return verdict;
}

Verdict codex(const std::vector<std::string>& lines)
{
    Verdict verdict;
    for (const std::string& line : lines) {
        if (const auto sample = codexSample(line, verdict))
            verdict.samples.push_back(*sample);
    }
    return verdict;
}

std::optional<std::variant<tallyfox::QuotaSnapshot, tallyfox::DecodingError>> reply(const std::string& text)
{
    using tallyfox::DecodingError;
    if (!tallyfox::isValidUtf8(text))
        return DecodingError::malformed;
    Line line(text);
    if (!line.isKnown)
        return std::nullopt;
    if (!line.isUsable)
        return line.isGrammatical ? DecodingError::wrongType : DecodingError::malformed;
    const Value* const limits = line.object(line.object(&line.root(), "result"), "rateLimits");
    const Value* const primary = line.object(limits, "primary");
    const Value* const secondary = line.object(limits, "secondary");
    const auto first = quotaWindow(line, primary);
    const auto second = quotaWindow(line, secondary);
    if (!line.isKnown)
        return std::nullopt;
    if (!line.isUsable)
        return DecodingError::wrongType;
    if (!first || (secondary && !second))
        return DecodingError::missingKey;
    return tallyfox::QuotaSnapshot{tallyfox::Provider::codex, *first, second, tallyfox::MeasurementConfidence::exact};
}

} // namespace usageOracle
