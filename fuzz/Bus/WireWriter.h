#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallyfox {

/// Values in wire format, little-endian. The caller has to follow the signature.
class WireWriter {
public:
    [[nodiscard]] const std::string& bytes() const
    {
        return m_bytes;
    }
    void align(std::size_t to)
    {
        m_bytes.append((to - m_bytes.size() % to) % to, '\0');
    }
    /// An integer of `size` bytes: 1, 2, 4 or 8.
    void integer(std::uint64_t value, std::size_t size = 4)
    {
        align(size);
        for (std::size_t place = 0; place < size; ++place)
            m_bytes += static_cast<char>(value >> (8 * place) & 0xffU);
    }
    /// A string or an object path.
    void text(std::string_view value)
    {
        integer(value.size());
        m_bytes += value;
        m_bytes += '\0';
    }
    void signature(std::string_view value)
    {
        integer(value.size(), 1);
        m_bytes += value;
        m_bytes += '\0';
    }
    /// An array with elements that are aligned to `alignment` and that `write` writes.
    template <typename Write> void array(std::size_t alignment, const Write& write)
    {
        align(4);
        const std::size_t start = m_bytes.size();
        integer(0);
        align(alignment);
        const std::size_t first = m_bytes.size();
        write();
        for (std::size_t place = 0; place < 4; ++place)
            m_bytes[start + place] = static_cast<char>((m_bytes.size() - first) >> (8 * place) & 0xffU);
    }
    /// One pair of a dictionary of variants, whose value `write` writes.
    template <typename Write> void pair(std::string_view key, std::string_view type, const Write& write)
    {
        align(8);
        text(key);
        signature(type);
        write();
    }

private:
    std::string m_bytes;
};

} // namespace tallyfox
