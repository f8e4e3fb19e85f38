#include "Support/Moments.h"
#include "Support/ScratchFolder.h"
#include "Support/TimeZoneBytes.h"
#include "TallyfoxCore/Time/TimeZoneFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <sys/stat.h>

namespace tallyfox::test {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::sys_seconds;

const TimeZoneBytes twoChanges{.offsets = {60, 3600, 7200}, .transitions = {{1000, 1}, {5000, 2}}, .footer = {}};

sys_seconds at(std::int64_t time)
{
    return sys_seconds{seconds{time}};
}

std::string berlin()
{
    std::ifstream stream{"/usr/share/zoneinfo/Europe/Berlin", std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

TEST(TimeZoneFile, stretchesAreBetweenTheTransitions)
{
    for (const std::string& bytes : {twoChanges.version1(), twoChanges.version2()}) {
        const auto zone = TimeZoneFile::decode(bytes).value();
        EXPECT_EQ(zone.offsetAt(at(999)), (ZoneOffset{ZoneOffset::earliest, at(1000), seconds{60}}));
        EXPECT_EQ(zone.offsetAt(at(1000)), (ZoneOffset{at(1000), at(5000), hours{1}}));
        EXPECT_EQ(zone.offsetAt(at(4999)), (ZoneOffset{at(1000), at(5000), hours{1}}));
        EXPECT_EQ(zone.offsetAt(at(5000)), (ZoneOffset{at(5000), ZoneOffset::latest, hours{2}}));
    }
}

TEST(TimeZoneFile, ruleHoldsAfterTheLastTransition)
{
    TimeZoneBytes slim = twoChanges;
    slim.footer = "EET-2EEST,M3.5.0/3,M10.5.0/4";
    const auto zone = TimeZoneFile::decode(slim.version2()).value();
    EXPECT_EQ(zone.offsetAt(at(5000)).begin, at(5000));
    EXPECT_EQ(zone.offsetAt(floor<seconds>(utcTime(2026, 7, 1))).offset, hours{3});
    EXPECT_EQ(zone.offsetAt(floor<seconds>(utcTime(2026, 12, 1))).offset, hours{2});
    EXPECT_EQ(zone.offsetAt(at(4999)).offset, hours{1});
}

TEST(TimeZoneFile, transitionsOutsideEveryYearAreHarmless)
{
    const TimeZoneBytes wide{.offsets = {0, 60, 120},
                             .transitions = {{-(std::int64_t{1} << 59), 1}, {std::int64_t{1} << 60, 2}},
                             .footer = {}};
    const auto zone = TimeZoneFile::decode(wide.version2()).value();
    EXPECT_EQ(zone.offsetAt(at(0)), ZoneOffset::always(seconds{60}));
}

TEST(TimeZoneFile, leapSecondsAreSkipped)
{
    TimeZoneBytes right = twoChanges;
    right.leapSeconds = 27;
    EXPECT_EQ(TimeZoneFile::decode(right.version2()).value().offsetAt(at(1000)).offset, hours{1});
}

TEST(TimeZoneFile, contradictoryDataAreRefused)
{
    EXPECT_FALSE(TimeZoneFile::decode(TimeZoneBytes{.offsets = {}, .transitions = {}, .footer = {}}.version2()));
    EXPECT_FALSE(TimeZoneFile::decode(TimeZoneBytes{.offsets = {100'000}, .transitions = {}, .footer = {}}.version2()));
    EXPECT_FALSE(
        TimeZoneFile::decode(TimeZoneBytes{.offsets = {INT32_MIN}, .transitions = {}, .footer = {}}.version2()));
    EXPECT_FALSE(TimeZoneFile::decode(TimeZoneBytes{.offsets = {0}, .transitions = {{5, 1}}, .footer = {}}.version2()));
    EXPECT_FALSE(
        TimeZoneFile::decode(TimeZoneBytes{.offsets = {0}, .transitions = {{5, 0}, {5, 0}}, .footer = {}}.version2()));
    EXPECT_FALSE(TimeZoneFile::decode(twoChanges.version2() + std::string(65'536, '\n')));
}

TEST(TimeZoneFile, everyTruncationIsRefused)
{
    const std::string whole = berlin();
    ASSERT_TRUE(TimeZoneFile::decode(whole));
    // The last line needs its line feed: nothing shorter is complete.
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(TimeZoneFile::decode(whole.substr(0, length))) << length;
}

TEST(TimeZoneFile, damagedBytesAreHarmless)
{
    const std::string whole = berlin();
    std::mt19937 random{1};
    std::uniform_int_distribution<std::size_t> positions{0, whole.size() - 1};
    std::uniform_int_distribution<int> bytes{0, 255};
    int refused = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string damaged = whole;
        for (int change = 0; change < 3; ++change)
            damaged[positions(random)] = static_cast<char>(bytes(random));
        const auto zone = TimeZoneFile::decode(damaged);
        refused += zone ? 0 : 1;
        if (!zone)
            continue;
        const ZoneOffset stretch = zone->offsetAt(floor<seconds>(utcTime(2026, 11, 21)));
        ASSERT_LT(stretch.begin, stretch.end);
        ASSERT_LE(abs(stretch.offset), ZoneOffset::largest);
    }
    EXPECT_GT(refused, 0);
}

TEST(TimeZoneFile, anythingButARegularFileIsNotOpened)
{
    std::string pattern = (std::filesystem::temp_directory_path() / "tallyfox-fifo-XXXXXX").string();
    const std::filesystem::path folder = mkdtemp(pattern.data());
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    EXPECT_FALSE(TimeZoneFile::read(folder / "fifo"));
    EXPECT_FALSE(TimeZoneFile::read(folder));
    EXPECT_FALSE(TimeZoneFile::read(folder / "missing"));
    std::filesystem::remove_all(folder);
}

TEST(TimeZoneFile, fileOfSixtyFourKibibytesIsReadAndALargerOneRefused)
{
    const ScratchFolder folder;
    const auto file = folder.path() / "zone";
    std::string bytes = twoChanges.version1();
    bytes.resize(65'536); // anything after the last block of version 1 is ignored
    writeFile(file, bytes);
    EXPECT_TRUE(TimeZoneFile::read(file));
    writeFile(file, bytes + '\0');
    EXPECT_FALSE(TimeZoneFile::read(file));
}

} // namespace
} // namespace tallyfox::test
