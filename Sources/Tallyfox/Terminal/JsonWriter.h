#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallyfox {

/// Writes one JSON text in a single line, members in the order they are given. Qt's writer sorts them. The caller
/// keeps begins and ends in pairs.
class JsonWriter {
public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// The name of the member whose value comes next.
    void name(std::string_view name);

    void null();
    void boolean(bool value);
    void integer(std::int64_t value);
    /// The shortest digits that read back as the same number; null for infinities and what is no number.
    void number(double value);
    /// Any bytes: what is no UTF-8 becomes U+FFFD.
    void string(std::string_view value);

    /// What has been written so far.
    [[nodiscard]] const std::string& text() const
    {
        return m_text;
    }

private:
    void separate();

    std::string m_text;
    bool m_needsComma = false;
};

} // namespace tallyfox
