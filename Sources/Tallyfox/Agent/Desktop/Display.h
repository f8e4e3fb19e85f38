#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

namespace tallyfox {

/// What a session says of its display: the variables of the same names, empty when not set.
struct DisplayVariables {
    QByteArray qtPlatform; ///< QT_QPA_PLATFORM: what the user has chosen
    QByteArray display; ///< DISPLAY: the X server, which may be a Wayland compositor's
    QByteArray waylandDisplay; ///< WAYLAND_DISPLAY
};

/// The value of QT_QPA_PLATFORM that suits the session; nothing when the session has no display. `hasXServer` tells
/// whether the X server can be reached; it is asked only when that matters.
///
/// A native Wayland client cannot place its windows, so the popover would not stand beside its icon: where there is an
/// X server, the program is its client. The user's own choice is kept whatever it is.
std::optional<QByteArray> platformFor(const DisplayVariables& variables, const std::function<bool()>& hasXServer);

/// Decides for this process, before its QApplication is made; whether there is a display at all. Waits for the X
/// server's answer, as the QApplication is going to.
bool chooseDisplay();

} // namespace tallyfox
