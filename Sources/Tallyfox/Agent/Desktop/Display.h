#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>

struct xcb_connection_t;

namespace tallyfox {

/// The environment variables of the display, empty when not set.
struct DisplayVariables {
    QByteArray qtPlatform; ///< QT_QPA_PLATFORM: what the user has chosen
    QByteArray display; ///< DISPLAY: the X server, perhaps of a Wayland compositor
    QByteArray waylandDisplay; ///< WAYLAND_DISPLAY
};

/// The value of QT_QPA_PLATFORM that suits the session; nothing when the session has no display. `hasXServer` tells
/// whether the X server can be reached; it is called only when that matters.
///
/// A native Wayland client cannot place its windows, so the popover would not open beside its icon: where there is an
/// X server, the program is its client. The user's own choice is always kept.
std::optional<QByteArray> platformFor(const DisplayVariables& variables, const std::function<bool()>& hasXServer);

/// Decides for this process, before its QApplication is made; returns whether there is a display at all. Waits for the
/// X server's reply, as the QApplication is going to.
bool chooseDisplay();

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
