#include "Support/HistoryRecords.h"

#include "Support/Moments.h"

namespace tallyfox::test {

namespace {

/// Builds one record from its members.
class Record {
public:
    explicit Record(const Members& changes)
        : m_changes(changes)
    { }

    /// The member at `path`, with `value` unless the changes say otherwise, and a comma; nothing if it is left out.
    [[nodiscard]] std::string member(const std::string& path, const std::string& value) const
    {
        const auto change = m_changes.find(path);
        const std::string& text = change == m_changes.end() ? value : change->second;
        const std::string key = path.substr(path.rfind('.') + 1);
        return text.empty() ? "" : '"' + key + "\":" + text + ',';
    }

    static std::string object(std::string members)
    {
        if (!members.empty())
            members.pop_back();
        return '{' + members + '}';
    }

private:
    const Members& m_changes;
};

} // namespace

std::string claudeLine(const Members& changes)
{
    const Record record(changes);
    const std::string usage = Record::object(record.member("message.usage.input_tokens", "1")
                                             + record.member("message.usage.output_tokens", "20")
                                             + record.member("message.usage.cache_read_input_tokens", "300")
                                             + record.member("message.usage.cache_creation_input_tokens", "4000"));
    const std::string message =
        Record::object(record.member("message.id", R"("message-1")") + record.member("message.model", R"("fox-1")")
                       + record.member("message.usage", usage));
    return Record::object(record.member("timestamp", R"("2026-11-21T09:41:07Z")")
                          + record.member("type", R"("assistant")") + record.member("message", message));
}

UsageSample claudeSample()
{
    return {Provider::claude,
            utcTime(2026, 11, 21, 9, 41, 7),
            "fox-1",
            1,
            20,
            300,
            0,
            4321,
            MeasurementConfidence::observed};
}

std::string codexLine(const Members& changes)
{
    const Record record(changes);
    const std::string info = "payload.info";
    const std::string last = info + ".last_token_usage";
    const std::string usage = Record::object(
        record.member(last + ".input_tokens", "1") + record.member(last + ".cached_input_tokens", "20")
        + record.member(last + ".output_tokens", "300") + record.member(last + ".reasoning_output_tokens", "4000")
        + record.member(last + ".total_tokens", "50000"));
    const std::string payload = Record::object(record.member("payload.type", R"("token_count")")
                                               + record.member(info, Record::object(record.member(last, usage))));
    return Record::object(record.member("timestamp", R"("2026-11-21T09:41:07Z")")
                          + record.member("type", R"("event_msg")") + record.member("payload", payload));
}

UsageSample codexSample()
{
    return {Provider::codex, utcTime(2026, 11, 21, 9, 41, 7), std::nullopt, 1, 300, 20, 4000,
            50000,           MeasurementConfidence::observed};
}

std::vector<std::string_view> linesOf(const HistoryLines& lines)
{
    std::vector<std::string_view> result;
    forEachLine(lines, LineSelection::all, {}, [&result](std::string_view line) { result.push_back(line); });
    return result;
}

std::string textOf(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

std::vector<std::int64_t> totalsOf(const std::vector<UsageSample>& samples)
{
    std::vector<std::int64_t> totals;
    for (const UsageSample& sample : samples)
        totals.push_back(sample.totalTokens);
    return totals;
}

} // namespace tallyfox::test
