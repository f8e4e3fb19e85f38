#include "Tallyfox/Agent/Desktop/Display.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace tallyfox {

namespace {

/// Tried before Qt does, which aborts the program when the server cannot be reached.
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

bool desktopComposites()
{
    xcb_connection_t* connection = x11Connection();
    if (!connection)
        return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    // A compositing manager owns this selection (EWMH). Qt's windows are all on the first X screen.
    const auto cookie = xcb_get_selection_owner(connection, x11Atom(connection, "_NET_WM_CM_S0"));
    const XcbReply<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(connection, cookie, nullptr)};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

xcb_connection_t* x11Connection()
{
    // The offscreen platform has this interface too, with no X server behind it.
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 && QGuiApplication::platformName() == QStringLiteral("xcb") ? x11->connection() : nullptr;
}

std::uint32_t x11Atom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection, cookie, nullptr)};
    return reply ? reply->atom : 0;
}

} // namespace tallyfox
