#include "Support/AnyHistory.h"

#include "Support/HistoryRecords.h"

#include <cstdio>

namespace tallyfox::test {

namespace {

std::string timestamp(int second)
{
    char text[40] = {};
    std::snprintf(text, sizeof text, "\"2026-11-21T09:%02d:%02dZ\"", second / 60 % 60, second % 60);
    return text;
}

} // namespace

std::string AnyRecord::line(Provider provider) const
{
    const std::string count = std::to_string(total);
    if (provider == Provider::codex)
        return codexLine({{"timestamp", timestamp(second)}, {"payload.info.last_token_usage.total_tokens", count}});
    return claudeLine({{"timestamp", timestamp(second)},
                       {"message.id", id ? "\"message-" + std::to_string(*id) + '"' : ""},
                       {"message.usage", "{\"output_tokens\":" + count + '}'}});
}

std::vector<std::string> AnyFile::lines(Provider provider) const
{
    std::vector<std::string> lines;
    for (std::size_t place = 0; place < records.size(); ++place) {
        if (place < noise.size() && !noise[place].empty())
            lines.push_back(noise[place]);
        lines.push_back(records[place].line(provider));
    }
    return lines;
}

rc::Gen<AnyRecord> anyRecord()
{
    const auto id = rc::gen::map(rc::gen::inRange(-1, 5),
                                 [](int number) { return number < 0 ? std::nullopt : std::optional{number}; });
    return rc::gen::build<AnyRecord>(rc::gen::set(&AnyRecord::id, id),
                                     rc::gen::set(&AnyRecord::second, rc::gen::inRange(0, 30)),
                                     rc::gen::set(&AnyRecord::total, rc::gen::inRange<std::int64_t>(0, 1'000)));
}

rc::Gen<AnyFile> anyFile()
{
    const auto noise = rc::gen::element<std::string>(
        "", "", R"({"type":"user","message":{"content":"said \"usage\": nothing"}})", "no JSON at all \xFF",
        R"({"type":"assistant","message":{"usage":{"output_tokens":)", R"({"usage":{},"last_token_usage":null})");
    return rc::gen::build<AnyFile>(
        rc::gen::set(&AnyFile::records, rc::gen::container<std::vector<AnyRecord>>(anyRecord())),
        rc::gen::set(&AnyFile::noise, rc::gen::container<std::vector<std::string>>(noise)));
}

rc::Gen<Provider> anyProvider()
{
    return rc::gen::elementOf(std::vector<Provider>(allProviders.begin(), allProviders.end()));
}

} // namespace tallyfox::test
