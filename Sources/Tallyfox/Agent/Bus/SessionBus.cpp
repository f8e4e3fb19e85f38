#include "Tallyfox/Agent/Bus/SessionBus.h"

#include "Tallyfox/Agent/Bus/MessageBus.h"

namespace tallyfox {

namespace {

constexpr std::chrono::seconds limit{2}; ///< a bus may be slow while a session starts

} // namespace

bool chooseSessionBus()
{
    if (busAnswers(sessionBusAddress(), limit))
        return true;
    qputenv("DBUS_SESSION_BUS_ADDRESS", noBusAddress);
    return false;
}

} // namespace tallyfox
