#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// A raw JSON string, without its quotation marks. A view: the text must outlive it.
struct JsonString {
    std::string_view raw; ///< grammatical, escapes not decoded; may hold invalid UTF-8
    bool hasEscapes = false;

    /// Whether the unescaped string is `ascii`, a literal. Does not allocate.
    template <std::size_t size> [[nodiscard]] bool equals(const char (&ascii)[size]) const
    {
        // With a length known at compile time a comparison is an instruction or two; a line takes about a hundred.
        constexpr std::size_t length = size - 1;
        if (!hasEscapes) [[likely]]
            return raw.size() == length && std::memcmp(raw.data(), ascii, length) == 0;
        return unescapedEquals({ascii, length});
    }

    /// The unescaped string in UTF-8. Lone surrogate escapes and ill-formed bytes become U+FFFD.
    [[nodiscard]] std::string decoded() const;

    /// The same: a view of the text where nothing has to change, else of `storage`, which must outlive the result.
    [[nodiscard]] std::string_view decoded(std::string& storage) const;

private:
    [[nodiscard]] bool unescapedEquals(std::string_view ascii) const;
};

/// A raw JSON number. A view: the text must outlive it.
struct JsonNumber {
    std::string_view raw; ///< grammatical

    /// The number if it is integral and fits 64 bits, in any spelling (5, 5.0, 50e-1).
    [[nodiscard]] std::optional<std::int64_t> toInteger() const;

    /// The nearest double; nothing beyond the largest one. A number that is too small becomes zero.
    [[nodiscard]] std::optional<double> toDouble() const;
};

} // namespace tallyfox
