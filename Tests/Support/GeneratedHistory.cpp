#include "Support/GeneratedHistory.h"

#include <cstdio>
#include <iterator>

namespace tallyfox::test {

GeneratedHistory::GeneratedHistory(Provider provider, std::uint64_t seed)
    : m_provider(provider)
    , m_random(seed)
{ }

bool GeneratedHistory::oneIn(unsigned count)
{
    return m_random() % count == 0;
}

unsigned GeneratedHistory::upTo(unsigned largest)
{
    return static_cast<unsigned>(m_random() % (std::uint64_t{largest} + 1));
}

template <std::size_t count> std::string_view GeneratedHistory::anyOf(const char* const (&choices)[count])
{
    return choices[upTo(count - 1)];
}

/// The word as a JSON string: mostly plain, else with some or all characters escaped.
std::string GeneratedHistory::spelled(std::string_view word)
{
    const bool isPlain = !oneIn(3);
    const unsigned rarity = 1 + upTo(static_cast<unsigned>(word.size()));
    std::string text = "\"";
    for (const char letter : word) {
        if (isPlain || !oneIn(rarity)) {
            text += letter;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, oneIn(2) ? "\\u%04x" : "\\u%04X", static_cast<unsigned>(letter));
        text += escape;
    }
    return text + '"';
}

std::string GeneratedHistory::member(std::string_view name, const std::string& value)
{
    const char* const colons[] = {":", ": ", " :", "\t:\r\n"};
    const std::string once = spelled(name) + std::string(anyOf(colons)) + value;
    if (!oneIn(20))
        return once;
    const char* const others[] = {"null", "5", "{}", "[]", "\"x\""};
    const std::string again = spelled(name) + ':' + std::string(anyOf(others));
    return oneIn(2) ? once + ',' + again : again + ',' + once;
}

/// The inside of a JSON string, of a length that moves what follows to any offset in a block.
std::string GeneratedHistory::filler()
{
    const char* const temptations[] = {R"(\"usage\":)",       R"(\\u0061)", R"(\u0061)", R"(\u001b[1m)",
                                       R"(last_token_usage)", R"(\n)",      "\xC3\xA9",  "\xF0\x9F\x98\x80",
                                       "\xFF\xFE\xE2\x82",    R"(\ud83d)",  R"(\u005C)", "\x7F"};
    std::string text(upTo(oneIn(3) ? 600 : 40), 'x');
    for (unsigned left = upTo(2); left > 0; --left)
        text.insert(upTo(static_cast<unsigned>(text.size())), anyOf(temptations));
    return text;
}

std::string GeneratedHistory::counts()
{
    const char* const claudeNames[] = {"input_tokens", "output_tokens", "cache_read_input_tokens",
                                       "cache_creation_input_tokens"};
    const char* const codexNames[] = {"input_tokens", "cached_input_tokens", "output_tokens", "reasoning_output_tokens",
                                      "total_tokens"};
    const char* const oddValues[] = {"null", "-7", "5.0", "1e2", "0.5", "\"5\"", "true"};
    std::string members;
    for (unsigned left = 1 + upTo(2); left > 0; --left) {
        const std::string_view name = m_provider == Provider::claude ? anyOf(claudeNames) : anyOf(codexNames);
        members += member(name, oneIn(25) ? std::string(anyOf(oddValues)) : std::to_string(upTo(99)));
        members += left > 1 ? "," : "";
    }
    return oneIn(30) ? "null" : '{' + members + '}';
}

std::string GeneratedHistory::claudeRecord()
{
    const char* const types[] = {"assistant", "assistant", "assistant", "assistant", "user", "Assistant"};
    const char* const ids[] = {"a", "b", "c", "2026-11-21T09:41:07Z-1", "2026-11-21T09:41:08Z-0"};
    const char* const times[] = {"2026-11-21T09:41:07Z", "2026-11-21T09:41:08Z", "2026-11-21T09:41:06.5Z"};
    std::string inside = oneIn(2) ? "" : member("id", spelled(anyOf(ids))) + ',';
    inside += "\"content\":\"" + filler() + "\",";
    inside += oneIn(10) ? "\"usages\":{}" : member("usage", counts());
    const std::string message = member("message", '{' + inside + '}');
    const std::string others = member("type", spelled(anyOf(types))) + ',' + member("timestamp", spelled(anyOf(times)));
    return '{' + (oneIn(2) ? message + ',' + others : others + ',' + message) + '}';
}

std::string GeneratedHistory::codexRecord()
{
    const char* const types[] = {"event_msg", "event_msg", "event_msg", "event_msg", "event_msg", "response_item"};
    const char* const events[] = {"token_count", "token_count", "token_count",
                                  "token_count", "token_count", "agent_message"};
    const char* const times[] = {"2026-11-21T09:41:07Z", "2026-11-21T09:41:08.25Z", "2026-11-21T09:41:06Z",
                                 "yesterday"};
    std::string info = "\"note\":\"" + filler() + "\",";
    info += oneIn(10) ? "\"total_token_usage\":{}" : member("last_token_usage", counts());
    const std::string payload =
        member("payload", '{' + member("type", spelled(anyOf(events))) + ',' + member("info", '{' + info + '}') + '}');
    const std::string others = member("type", spelled(anyOf(types))) + ',' + member("timestamp", spelled(anyOf(times)));
    return '{' + (oneIn(2) ? payload + ',' + others : others + ',' + payload) + '}';
}

std::string GeneratedHistory::record()
{
    return m_provider == Provider::claude ? claudeRecord() : codexRecord();
}

std::string GeneratedHistory::damaged(std::string line)
{
    const char* const wounds[] = {"\xFF", "\xC3", "\x1B[0m", "\\", "\"", "}", "\r", "\\u0061"};
    const unsigned place = upTo(static_cast<unsigned>(line.size()));
    if (oneIn(2))
        return oneIn(2) ? line.substr(0, place) : line.substr(place);
    return line.insert(place, anyOf(wounds));
}

std::string GeneratedHistory::line()
{
    switch (upTo(9)) {
    case 0:
        return damaged(record());
    case 1:
        return "{\"type\":\"user\",\"text\":\"" + filler() + "\"}";
    case 2:
        return filler();
    case 3:
        return {};
    default:
        return record();
    }
}

std::string GeneratedHistory::text()
{
    const char* const separators[] = {"\n", "\n",   "\n",     "\n",   "\n", "\n",    "\n",
                                      "\n", "\n\n", "\r\n\n", "\r\n", "\r", "\n\r\n"};
    std::string text(upTo(9) / 9, '\n');
    for (unsigned left = 1 + upTo(3); left > 0; --left) {
        text += line();
        if (left > 1 || oneIn(2))
            text += anyOf(separators);
    }
    return text;
}

} // namespace tallyfox::test
