#pragma once

#include <QString>

namespace tallyfox {

/// By which ways a session's shortcuts come.
struct ShortcutWays {
    bool isGrabbed = false; ///< from the X server
    bool isPortals = false; ///< from the desktop portal

    friend bool operator==(const ShortcutWays&, const ShortcutWays&) = default;
};

/// `platform` is QGuiApplication's name of it.
inline ShortcutWays shortcutWays(QStringView platform, bool isWaylandSession)
{
    const bool isX11 = platform == QLatin1StringView{"xcb"};
    return {.isGrabbed = isX11,
            .isPortals = isX11 ? isWaylandSession : platform.startsWith(QLatin1StringView{"wayland"})};
}

} // namespace tallyfox
