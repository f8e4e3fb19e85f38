#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallyfox {

/// Writes one JSON text on a single line, with members in the order of the calls; Qt's writer sorts them. The caller
/// must match begins and ends.
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
    /// The shortest digits that read back as the same number; null for infinities and NaN.
    void number(double value);
    /// Accepts any bytes: invalid UTF-8 becomes U+FFFD.
    void string(std::string_view value);

    /// The text so far.
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
