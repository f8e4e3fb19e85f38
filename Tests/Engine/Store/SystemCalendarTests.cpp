#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace tallyfox::test {
namespace {

class SystemCalendar : public testing::Test {
protected:
    SystemCalendar()
        : m_wasSet(qEnvironmentVariableIsSet("TZ"))
        , m_before(qgetenv("TZ"))
    { }
    ~SystemCalendar() override
    {
        qunsetenv("TZDIR");
        if (m_wasSet)
            qputenv("TZ", m_before);
        else
            qunsetenv("TZ");
    }

    bool m_wasSet;
    QByteArray m_before;
};

TEST_F(SystemCalendar, zoneIsTheOneThatTZNames)
{
    qputenv("TZ", "Asia/Kathmandu");
    EXPECT_EQ(systemCalendar().timeZoneName(), "Asia/Kathmandu");
    qputenv("TZ", ":Europe/Berlin");
    EXPECT_EQ(systemCalendar().timeZoneName(), "Europe/Berlin");
}

TEST_F(SystemCalendar, emptyOrInvalidTZMeansUtc)
{
    for (const char* text : {"", "Atlantis/Capital", "../../../etc/passwd"}) {
        qputenv("TZ", text);
        EXPECT_EQ(systemCalendar().timeZoneName(), "UTC") << text;
    }
}

TEST_F(SystemCalendar, withoutTZTheSystemsZoneIsUsed)
{
    qunsetenv("TZ");
    EXPECT_EQ(systemCalendar().timeZoneName(), Calendar::ofSystem().value_or(Calendar::utc()).timeZoneName());
}

TEST_F(SystemCalendar, zonesAreReadFromTZDIR)
{
    qputenv("TZ", "Berlin");
    EXPECT_EQ(systemCalendar().timeZoneName(), "UTC");
    qputenv("TZDIR", "/usr/share/zoneinfo/Europe");
    EXPECT_EQ(systemCalendar().timeZoneName(), "Berlin");
    qputenv("TZDIR", "relative/folder");
    EXPECT_EQ(systemCalendar().timeZoneName(), "UTC");
}

TEST_F(SystemCalendar, severalThreadsCanReadItAtOnce)
{
    qputenv("TZ", "Europe/Berlin");
    std::vector<std::thread> threads;
    std::vector<std::string> names(4);
    for (std::string& name : names)
        threads.emplace_back([&name] {
            for (int round = 0; round < 50; ++round)
                name = systemCalendar().timeZoneName();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(names, std::vector<std::string>(4, "Europe/Berlin"));
}

} // namespace
} // namespace tallyfox::test
