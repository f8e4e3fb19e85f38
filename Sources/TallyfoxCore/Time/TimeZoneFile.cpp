#include "TallyfoxCore/Time/TimeZoneFile.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>
#include <system_error>

namespace tallyfox {

using std::chrono::seconds;
using std::chrono::sys_seconds;

namespace {

constexpr std::size_t headerSize = 44;
constexpr std::size_t largestFile = 65'536; ///< bytes; the largest zone of the database has less than 4,000
constexpr std::size_t typeSize = 6;

/// The big-endian integer in the first `size` bytes.
std::uint64_t unsignedAt(std::string_view bytes, std::size_t position, std::size_t size)
{
    std::uint64_t value = 0;
    for (const char byte : bytes.substr(position, size))
        value = value << 8U | static_cast<unsigned char>(byte);
    return value;
}

std::size_t countAt(std::string_view bytes, std::size_t position)
{
    return static_cast<std::size_t>(unsignedAt(bytes, position, 4));
}

std::int64_t signedAt(std::string_view bytes, std::size_t position, std::size_t size)
{
    const std::uint64_t value = unsignedAt(bytes, position, size);
    return size == 4 ? std::int64_t{static_cast<std::int32_t>(value)} : static_cast<std::int64_t>(value);
}

} // namespace

/// What a header says about the block behind it.
struct TimeZoneFile::Layout {
    char version = 0;
    std::size_t timeSize = 0; ///< bytes of one time: 4 in the first block, 8 in the second
    std::size_t times = 0;
    std::size_t types = 0;
    std::size_t rest = 0; ///< bytes of everything behind the types

    static std::optional<Layout> read(std::string_view bytes, std::size_t timeSize)
    {
        if (bytes.size() < headerSize || !bytes.starts_with("TZif"))
            return std::nullopt;
        const std::size_t leapSeconds = countAt(bytes, 28);
        return Layout{.version = bytes[4],
                      .timeSize = timeSize,
                      .times = countAt(bytes, 32),
                      .types = countAt(bytes, 36),
                      .rest =
                          countAt(bytes, 40) + leapSeconds * (timeSize + 4) + countAt(bytes, 24) + countAt(bytes, 20)};
    }

    [[nodiscard]] std::size_t size() const
    {
        return times * (timeSize + 1) + types * typeSize + rest;
    }
};

bool TimeZoneFile::readBlock(std::string_view block, const Layout& layout)
{
    const std::size_t indexes = layout.times * layout.timeSize;
    const std::size_t types = indexes + layout.times;
    std::vector<seconds> offsets;
    for (std::size_t type = 0; type < layout.types; ++type) {
        const seconds offset{signedAt(block, types + type * typeSize, 4)};
        if (abs(offset) > ZoneOffset::largest)
            return false;
        offsets.push_back(offset);
    }
    if (offsets.empty())
        return false;
    m_first = offsets.front();
    for (std::size_t index = 0; index < layout.times; ++index) {
        const auto type = static_cast<std::size_t>(unsignedAt(block, indexes + index, 1));
        const sys_seconds time{seconds{signedAt(block, index * layout.timeSize, layout.timeSize)}};
        if (type >= offsets.size() || (!m_transitions.empty() && time <= m_transitions.back().time))
            return false;
        m_transitions.push_back({time, offsets[type]});
    }
    return true;
}

std::optional<TimeZoneFile> TimeZoneFile::decode(std::string_view bytes)
{
    if (bytes.size() > largestFile)
        return std::nullopt;
    auto layout = Layout::read(bytes, 4);
    if (layout && layout->version != 0) {
        // The first block, with times of 32 bits, is only for old readers.
        bytes.remove_prefix(std::min(bytes.size(), headerSize + layout->size()));
        layout = Layout::read(bytes, 8);
    }
    if (!layout || bytes.size() - headerSize < layout->size())
        return std::nullopt;

    TimeZoneFile zone;
    if (!zone.readBlock(bytes.substr(headerSize, layout->size()), *layout))
        return std::nullopt;
    if (layout->version == 0)
        return zone;
    const std::string_view footer = bytes.substr(headerSize + layout->size());
    if (footer.size() < 2 || footer.front() != '\n' || footer.back() != '\n')
        return std::nullopt;
    zone.m_afterwards = TimeZoneRule::parse(footer.substr(1, footer.size() - 2));
    return zone;
}

std::optional<TimeZoneFile> TimeZoneFile::read(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt; // opening a FIFO would wait for a writer
    std::ifstream stream{path, std::ios::binary};
    std::string bytes(largestFile + 1, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return decode(bytes);
}

ZoneOffset TimeZoneFile::offsetAt(sys_seconds time) const
{
    const auto next =
        std::upper_bound(m_transitions.begin(), m_transitions.end(), time,
                         [](sys_seconds at, const Transition& transition) { return at < transition.time; });
    const bool isFirst = next == m_transitions.begin();
    const bool isLast = next == m_transitions.end();
    const sys_seconds begin = isFirst ? ZoneOffset::earliest : std::max(ZoneOffset::earliest, std::prev(next)->time);
    if (isLast && m_afterwards)
        return m_afterwards->offsetAt(time).within(begin, ZoneOffset::latest);
    const seconds offset = isFirst ? m_first : std::prev(next)->offset;
    return ZoneOffset::always(offset).within(begin, isLast ? ZoneOffset::latest : next->time);
}

} // namespace tallyfox
