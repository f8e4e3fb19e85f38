#pragma once

#include "TallyfoxCore/Usage/Provider.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <rapidcheck.h>
#include <string>
#include <vector>

namespace tallyfox::test {

/// A record of a history, reduced to what the properties vary.
struct AnyRecord {
    std::optional<int> id; ///< of the message (Claude); of few values, so that they repeat
    int second = 0; ///< of one hour
    std::int64_t total = 0;

    /// As the assistant writes it, without a line feed.
    [[nodiscard]] std::string line(Provider provider) const;

    friend bool operator==(const AnyRecord&, const AnyRecord&) = default;
};

inline void showValue(const AnyRecord& record, std::ostream& stream)
{
    stream << "{id " << record.id.value_or(-1) << ", second " << record.second << ", total " << record.total << '}';
}

/// One history file: records, and other lines between them.
struct AnyFile {
    std::vector<AnyRecord> records;
    std::vector<std::string> noise; ///< a line before the record at the same place; none when it is empty

    [[nodiscard]] std::vector<std::string> lines(Provider provider) const;
};

inline void showValue(const AnyFile& file, std::ostream& stream)
{
    for (const std::string& line : file.lines(Provider::claude))
        stream << line << '\n';
}

rc::Gen<AnyRecord> anyRecord();
rc::Gen<AnyFile> anyFile();
rc::Gen<Provider> anyProvider();

} // namespace tallyfox::test
