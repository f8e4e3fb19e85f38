#include "Support/GlibcTimeZone.h"

#include <cstdlib>
#include <ctime>

namespace tallyfox::test {

GlibcTimeZone::GlibcTimeZone(const std::string& timeZone)
{
    if (const char* before = std::getenv("TZ"))
        m_before = before;
    setenv("TZ", timeZone.c_str(), 1);
    tzset();
}

GlibcTimeZone::~GlibcTimeZone()
{
    if (m_before)
        setenv("TZ", m_before->c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

std::chrono::local_days GlibcTimeZone::dayOf(std::chrono::sys_seconds time) const
{
    const std::time_t seconds = time.time_since_epoch().count();
    std::tm local{};
    localtime_r(&seconds, &local);
    const std::chrono::year year{local.tm_year + 1900};
    const std::chrono::month month{static_cast<unsigned>(local.tm_mon + 1)};
    return std::chrono::local_days{year / month / local.tm_mday};
}

} // namespace tallyfox::test
