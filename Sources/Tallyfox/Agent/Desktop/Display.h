#pragma once

#include <QByteArray>
#include <QPoint>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <variant>

struct xcb_connection_t;

namespace tallyfox {

/// The environment variables of the display, empty when not set.
struct DisplayVariables {
    QByteArray qtPlatform; ///< QT_QPA_PLATFORM: what the user has chosen
    QByteArray display; ///< DISPLAY: the X server, perhaps of a Wayland compositor
    QByteArray waylandDisplay; ///< WAYLAND_DISPLAY
};

/// What is tried, and only when it matters.
struct DisplayProbes {
    std::function<bool()> hasXServer; ///< whether the X server can be reached
    std::function<bool()> hasLayerShell; ///< whether a Wayland client can put its windows beside panels
    std::function<bool(const char* platform)> hasPlugIn; ///< whether Qt's plug-in for that platform is installed
};

/// Why the program cannot show anything, in one line.
struct DisplayProblem {
    const char* message = "";
};

/// The value of QT_QPA_PLATFORM that suits the session.
///
/// Without the layer shell, a native Wayland client cannot place its windows, so the popover would not open beside its
/// icon: where there is an X server, the program is its client. The user's own choice is always kept.
std::variant<QByteArray, DisplayProblem> platformFor(const DisplayVariables& variables, const DisplayProbes& probes);

struct CloseXcbConnection {
    void operator()(xcb_connection_t* connection) const;
};

using XcbConnection = std::unique_ptr<xcb_connection_t, CloseXcbConnection>;

/// Decides for this process, before its QApplication is made. Waits for the X server's reply, as the QApplication is
/// going to. Returns the connection on which the server has answered, or null if none was asked: close it once the
/// QApplication has its own, because a server resets when its only client leaves, and drops whoever comes meanwhile.
std::variant<XcbConnection, DisplayProblem> chooseDisplay();

/// Whether the desktop is a Wayland compositor, of whose X server this program may be a client.
bool isWaylandSession();

/// Where the pointer is, in logical coordinates. Nothing in a Wayland session: there a program, even as a client of the
/// X server, knows the pointer's position only over its own windows.
std::optional<QPoint> pointerPosition();

/// Whether the desktop composites windows now, so that one can fade in. Main thread.
bool desktopComposites();

/// Qt's own connection to the X server; null on other platforms.
xcb_connection_t* x11Connection();

/// The number of an X11 atom; 0 on failure.
std::uint32_t x11Atom(xcb_connection_t* connection, const QByteArray& name);

struct FreeXcbReply {
    void operator()(void* reply) const
    {
        std::free(reply); // the library allocates its replies with malloc
    }
};

template <typename Reply> using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

} // namespace tallyfox
