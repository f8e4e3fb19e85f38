#include "Tallyfox/Agent/Desktop/Display.h"

#include "Tallyfox/Agent/Desktop/LayerShell.h"

#include <QCursor>
#include <QDir>
#include <QGuiApplication>

#include <algorithm>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

constexpr DisplayProblem noDisplay{
    "there is no display to show a status icon on; tallyfox --summary prints the figures"};
constexpr DisplayProblem noX11PlugIn{"Qt's plug-in for X11 is not installed: on Debian, it is in libqt6gui6"};
constexpr DisplayProblem noWaylandPlugIn{
    "there is no X server here, and Qt's plug-in for Wayland is not installed: on Debian, it is in qt6-wayland"};

/// By the names of the files in the folders that Qt is going to search: reading what is in them would take longer.
bool hasPlugIn(const char* platform)
{
    QStringList folders{qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH")};
    for (const QString& path : QCoreApplication::libraryPaths())
        folders << path + QStringLiteral("/platforms");
    // Not by QDir's patterns: their compiled expressions would be in memory that is writable and executable.
    const QString beginning = QStringLiteral("libq") + QLatin1StringView{platform};
    return std::any_of(folders.begin(), folders.end(), [&](const QString& folder) {
        const QStringList names = folder.isEmpty() ? QStringList{} : QDir{folder}.entryList(QDir::Files);
        return std::any_of(names.begin(), names.end(), [&](const QString& name) {
            return name.startsWith(beginning) && name.endsWith(QStringLiteral(".so"));
        });
    });
}

} // namespace

std::variant<QByteArray, DisplayProblem> platformFor(const DisplayVariables& variables, const DisplayProbes& probes)
{
    if (!variables.qtPlatform.isEmpty())
        return variables.qtPlatform;
    if (!variables.waylandDisplay.isEmpty() && probes.hasLayerShell() && probes.hasPlugIn("wayland"))
        return QByteArray{"wayland"};
    const bool isX11 = !variables.display.isEmpty() && probes.hasXServer();
    if (isX11 && probes.hasPlugIn("xcb"))
        return QByteArray{"xcb"};
    if (variables.waylandDisplay.isEmpty())
        return isX11 ? noX11PlugIn : noDisplay;
    if (probes.hasPlugIn("wayland"))
        return QByteArray{"wayland"};
    return isX11 ? noX11PlugIn : noWaylandPlugIn;
}

void CloseXcbConnection::operator()(xcb_connection_t* connection) const
{
    xcb_disconnect(connection);
}

std::variant<XcbConnection, DisplayProblem> chooseDisplay()
{
    XcbConnection connection;
    const auto hasXServer = [&] {
        // Tried before Qt does, which aborts the program when the server cannot be reached.
        connection.reset(xcb_connect(nullptr, nullptr));
        return xcb_connection_has_error(connection.get()) == 0;
    };
    const auto platform = platformFor({qgetenv("QT_QPA_PLATFORM"), qgetenv("DISPLAY"), qgetenv("WAYLAND_DISPLAY")},
                                      {hasXServer, hasLayerShell, hasPlugIn});
    if (const auto* problem = std::get_if<DisplayProblem>(&platform))
        return *problem;
    qputenv("QT_QPA_PLATFORM", std::get<QByteArray>(platform));
    return connection;
}

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
}

std::optional<QPoint> pointerPosition()
{
    const bool isX11 = QGuiApplication::platformName() == QStringLiteral("xcb");
    return isX11 && !isWaylandSession() ? std::optional{QCursor::pos()} : std::nullopt;
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
