#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// A JSON string as it stands in the text, between its quotation marks. A view: the text must outlive it.
struct JsonString {
    std::string_view raw; ///< grammatical, not unescaped; may hold bytes that are no UTF-8
    bool hasEscapes = false;

    /// Whether the unescaped string is `ascii`, a literal. Does not allocate.
    template <std::size_t size> [[nodiscard]] bool equals(const char (&ascii)[size]) const
    {
        // The length is known here, so that a comparison is an instruction or two. A line takes about a hundred.
        constexpr std::size_t length = size - 1;
        if (!hasEscapes) [[likely]]
            return raw.size() == length && std::memcmp(raw.data(), ascii, length) == 0;
        return unescapedEquals({ascii, length});
    }

    /// The unescaped string in UTF-8. Lone surrogate escapes and ill-formed bytes become U+FFFD.
    [[nodiscard]] std::string decoded() const;

    /// The same; as it stands in the text if it can stay so, else held by `storage`, which the result must not outlive.
    [[nodiscard]] std::string_view decoded(std::string& storage) const;

private:
    [[nodiscard]] bool unescapedEquals(std::string_view ascii) const;
};

/// A JSON number as it stands in the text. A view: the text must outlive it.
struct JsonNumber {
    std::string_view raw; ///< grammatical

    /// The number if it is integral and fits, however it is written (5, 5.0, 50e-1).
    [[nodiscard]] std::optional<std::int64_t> toInteger() const;

    /// The nearest double; nothing when it exceeds the largest one. What is too small becomes zero.
    [[nodiscard]] std::optional<double> toDouble() const;
};

} // namespace tallyfox
