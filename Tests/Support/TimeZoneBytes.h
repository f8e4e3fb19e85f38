#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {

/// The bytes of a compiled zone, also of damaged and unusual ones.
struct TimeZoneBytes {
    struct Transition {
        std::int64_t time = 0; ///< seconds since 1970
        std::uint8_t type = 0; ///< index into `offsets`
    };
    std::vector<std::int32_t> offsets{0}; ///< seconds, the first one before every transition
    std::vector<Transition> transitions;
    std::string footer; ///< the rule afterwards
    std::uint32_t leapSeconds = 0;

    /// Version 2: an empty block for old readers, then everything.
    [[nodiscard]] std::string version2() const
    {
        return TimeZoneBytes{}.block('2', 4) + block('2', 8) + '\n' + footer + '\n';
    }

    /// Version 1: times of 32 bits and no footer.
    [[nodiscard]] std::string version1() const
    {
        return block('\0', 4);
    }

private:
    [[nodiscard]] std::string block(char version, int timeSize) const
    {
        constexpr std::string_view abbreviation{"ZON\0", 4};
        std::string bytes = std::string{"TZif"} + version + std::string(15, '\0');
        const auto transitionCount = static_cast<std::int64_t>(transitions.size());
        const auto typeCount = static_cast<std::int64_t>(offsets.size());
        for (const std::int64_t count : {std::int64_t{0}, std::int64_t{0}, std::int64_t{leapSeconds}, transitionCount,
                                         typeCount, static_cast<std::int64_t>(abbreviation.size())})
            append(bytes, count, 4);
        for (const Transition& transition : transitions)
            append(bytes, transition.time, timeSize);
        for (const Transition& transition : transitions)
            append(bytes, transition.type, 1);
        for (const std::int32_t offset : offsets) {
            append(bytes, offset, 4);
            append(bytes, 0, 2); // no summer time, and the first abbreviation
        }
        bytes += abbreviation;
        bytes += std::string(leapSeconds * static_cast<std::size_t>(timeSize + 4), '\0');
        return bytes;
    }

    static void append(std::string& bytes, std::int64_t value, int size)
    {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> static_cast<unsigned>(shift));
    }
};

} // namespace tallyfox::test
