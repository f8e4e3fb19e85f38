#include "Tallyfox/Agent/Desktop/Display.h"

#include <xcb/xcb.h>

namespace tallyfox {

namespace {

/// Qt ends the program with a core dump when there is none, so it is asked first.
bool reachesXServer()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool isReached = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isReached;
}

} // namespace

std::optional<QByteArray> platformFor(const DisplayVariables& variables, const std::function<bool()>& hasXServer)
{
    if (!variables.qtPlatform.isEmpty())
        return variables.qtPlatform;
    if (!variables.display.isEmpty() && hasXServer())
        return "xcb";
    if (!variables.waylandDisplay.isEmpty())
        return "wayland";
    return std::nullopt;
}

bool chooseDisplay()
{
    const std::optional<QByteArray> platform =
        platformFor({qgetenv("QT_QPA_PLATFORM"), qgetenv("DISPLAY"), qgetenv("WAYLAND_DISPLAY")}, reachesXServer);
    if (platform)
        qputenv("QT_QPA_PLATFORM", *platform);
    return platform.has_value();
}

} // namespace tallyfox
