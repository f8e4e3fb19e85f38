#pragma once

#include <simdjson.h>

#include <TallyfoxCore/Usage/Provider.h>
#include <cstdint>
#include <string_view>

namespace tallyfox::bench {

/// The simple reader: makes a document of every line and adds up the usage that it finds.
class SimdjsonUsage {
public:
    explicit SimdjsonUsage(Provider provider);

    /// Adds the usage of the lines of one tail, to be followed by SIMDJSON_PADDING readable bytes. The first line
    /// is skipped if `isCut`.
    void add(std::string_view tail, bool isCut);

    /// Tokens of all records so far. A message that is spread over lines counts with each of them.
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
