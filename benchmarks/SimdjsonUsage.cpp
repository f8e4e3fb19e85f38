#include "SimdjsonUsage.h"

#include <algorithm>

namespace tallyfox::bench {

namespace {

bool hasType(const simdjson::dom::element& object, std::string_view wanted)
{
    std::string_view type;
    return object["type"].get(type) == simdjson::SUCCESS && type == wanted;
}

std::int64_t count(const simdjson::dom::element& usage, std::string_view key)
{
    std::int64_t value = 0;
    return usage[key].get(value) == simdjson::SUCCESS ? value : 0;
}

std::int64_t claudeTokens(const simdjson::dom::element& record)
{
    simdjson::dom::element usage;
    if (!hasType(record, "assistant") || record["message"]["usage"].get(usage) != simdjson::SUCCESS)
        return 0;
    return count(usage, "input_tokens") + count(usage, "output_tokens") + count(usage, "cache_read_input_tokens")
        + count(usage, "cache_creation_input_tokens");
}

std::int64_t codexTokens(const simdjson::dom::element& record)
{
    simdjson::dom::element payload;
    simdjson::dom::element usage;
    if (!hasType(record, "event_msg") || record["payload"].get(payload) != simdjson::SUCCESS
        || !hasType(payload, "token_count") || payload["info"]["last_token_usage"].get(usage) != simdjson::SUCCESS)
        return 0;
    return count(usage, "total_tokens");
}

} // namespace

SimdjsonUsage::SimdjsonUsage(Provider provider)
    : m_provider(provider)
{ }

void SimdjsonUsage::add(std::string_view tail, bool isCut)
{
    while (!tail.empty()) {
        const auto end = std::min(tail.find('\n'), tail.size());
        simdjson::dom::element record;
        // The bytes after the line serve as its padding, which saves the parser a copy.
        if (!isCut && m_parser.parse(tail.data(), end, false).get(record) == simdjson::SUCCESS)
            m_tokens += tokensOf(record);
        isCut = false;
        tail.remove_prefix(std::min(end + 1, tail.size()));
    }
}

std::int64_t SimdjsonUsage::tokensOf(const simdjson::dom::element& record) const
{
    return m_provider == Provider::claude ? claudeTokens(record) : codexTokens(record);
}

} // namespace tallyfox::bench
