#include "TallyfoxCore/Time/Calendar.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

struct ClosePipe {
    void operator()(std::FILE* pipe) const
    {
        ::pclose(pipe);
    }
};

/// zdump's line for one moment in one zone.
struct Statement {
    sys_seconds time;
    seconds offset{};
};

/// Parses "NAME  Sun Mar 31 01:00:00 2024 UT = Sun Mar 31 03:00:00 2024 CEST isdst=1 gmtoff=7200", after the
/// name.
std::optional<Statement> statement(const char* line)
{
    static constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    char month[4] = {};
    unsigned day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    long long year = 0; // of the first and last moments that zdump knows: any number
    const char* const offset = std::strstr(line, "gmtoff=");
    if (!offset || std::sscanf(line, "%*s %3s %u %d:%d:%d %lld UT", month, &day, &hour, &minute, &second, &year) != 6)
        return std::nullopt; // before the year -2^31, where zdump has no calendar
    if (year < int{std::chrono::year::min()} || year > int{std::chrono::year::max()})
        return std::nullopt;
    const auto number = static_cast<unsigned>(months.find(month) / 3 + 1);
    const sys_days date =
        std::chrono::year{static_cast<int>(year)} / std::chrono::month{number} / std::chrono::day{day};
    return Statement{date + std::chrono::hours{hour} + std::chrono::minutes{minute} + seconds{second},
                     seconds{std::atoi(offset + std::strlen("gmtoff="))}};
}

/// The zones of the database, each by one name, without the tables and copies beside them.
std::vector<std::string> zoneNames()
{
    const std::filesystem::path folder = "/usr/share/zoneinfo";
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{folder}) {
        const std::string name = entry.path().lexically_relative(folder).string();
        if (name.starts_with("right/") || name.starts_with("posix/") || entry.is_symlink() || !entry.is_regular_file())
            continue;
        if (Calendar::named(name))
            names.push_back(name);
    }
    return names;
}

/// The years to compare, "FROM,TO"; zdump takes a tenth of a second for a zone and a century.
std::string years()
{
    const char* const wanted = std::getenv("TALLYFOX_ZDUMP_YEARS");
    return wanted ? wanted : "2005,2040";
}

/// Both seconds at every change of every zone, where mistakes would be.
TEST(CalendarAgainstZdump, everyClockChangeOfEveryZoneIsTheSame)
{
    const std::vector<std::string> names = zoneNames();
    ASSERT_GT(names.size(), 250U);
    std::string command = "zdump -v -c " + years();
    for (const std::string& name : names)
        command += ' ' + name;
    const std::unique_ptr<std::FILE, ClosePipe> output{::popen(command.c_str(), "r")};
    ASSERT_TRUE(output);
    std::array<char, 512> line{};
    std::string known;
    std::optional<Calendar> calendar;
    int compared = 0;
    while (std::fgets(line.data(), line.size(), output.get())) {
        const std::string name{line.data(), std::strcspn(line.data(), " ")};
        if (name != known) {
            known = name;
            calendar = Calendar::named(name);
        }
        const auto expected = statement(line.data() + name.size());
        if (!expected || expected->time < std::chrono::floor<seconds>(distantPast)
            || expected->time > std::chrono::floor<seconds>(distantFuture))
            continue;
        ASSERT_TRUE(calendar) << line.data();
        ASSERT_EQ(calendar->offsetAt(expected->time).offset, expected->offset) << line.data();
        ++compared;
    }
    EXPECT_GT(compared, 5'000);
}

} // namespace
} // namespace tallyfox::test
