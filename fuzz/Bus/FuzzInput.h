#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallyfox {

/// Decisions, made from the fuzzer's bytes in order; zeros when they have run out.
class FuzzInput {
public:
    explicit FuzzInput(std::string_view bytes)
        : m_bytes(bytes)
    { }

    [[nodiscard]] bool isEmpty() const
    {
        return m_bytes.empty();
    }
    std::uint8_t byte()
    {
        if (m_bytes.empty())
            return 0;
        const auto first = static_cast<std::uint8_t>(m_bytes.front());
        m_bytes.remove_prefix(1);
        return first;
    }
    bool flip()
    {
        return byte() % 2 != 0;
    }
    /// Below `end`, which is at most 256.
    std::size_t below(std::size_t end)
    {
        return byte() % end;
    }
    /// Any number; small ones are likelier.
    std::uint64_t number()
    {
        const std::size_t length = below(9);
        std::uint64_t value = 0;
        for (std::size_t place = 0; place < length; ++place)
            value = value << 8U | byte();
        return value;
    }
    template <typename List> const auto& oneOf(const List& list)
    {
        return list[below(std::size(list))];
    }

private:
    std::string_view m_bytes;
};

} // namespace tallyfox
