#pragma once

#include <simdjson.h>

#include <TallyfoxCore/Usage/Provider.h>
#include <cstdint>
#include <string_view>

namespace tallyfox::bench {

/// The reader that one would write in an afternoon: it makes a document of every line and adds up the usage of the
/// records that have one.
class SimdjsonUsage {
public:
    explicit SimdjsonUsage(Provider provider);

    /// Adds the usage of the lines of one tail, to be followed by SIMDJSON_PADDING readable bytes. The first line
    /// is left out if `isCut`.
    void add(std::string_view tail, bool isCut);

    /// Tokens of all records so far. A message that is spread over several lines counts once for each.
    [[nodiscard]] std::int64_t tokens() const
    {
        return m_tokens;
    }

private:
    std::int64_t tokensOf(const simdjson::dom::element& record) const;

    Provider m_provider;
    simdjson::dom::parser m_parser;
    std::int64_t m_tokens = 0;
};

} // namespace tallyfox::bench
