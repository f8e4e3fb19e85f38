#include "Tallyfox/Engine/System/SystemCalendar.h"

#include <QByteArray>

#include <optional>
#include <string_view>

namespace tallyfox {

namespace {

/// The folder of zones, which systems without a fixed place for it give in `TZDIR`.
Calendar::Database systemDatabase()
{
    Calendar::Database database;
    const QByteArray folder = qgetenv("TZDIR");
    if (folder.startsWith('/'))
        database.zones = folder.toStdString();
    return database;
}

} // namespace

Calendar systemCalendar()
{
    const Calendar::Database database = systemDatabase();
    const bool isSet = qEnvironmentVariableIsSet("TZ");
    const QByteArray timeZone = qgetenv("TZ");
    const auto calendar = isSet ? Calendar::named(timeZone.toStdString(), database) : Calendar::ofSystem(database);
    return calendar.value_or(Calendar::utc());
}

} // namespace tallyfox
