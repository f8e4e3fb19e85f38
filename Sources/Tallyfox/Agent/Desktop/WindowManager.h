#pragma once

#include <QByteArray>

#include <array>
#include <cstdint>

class QWidget;
struct xcb_connection_t;

namespace tallyfox {

/// Sends the window manager of an X server a message about `window`, as EWMH defines them.
void askWindowManager(xcb_connection_t* connection, std::uint32_t window, const QByteArray& type,
                      const std::array<std::uint32_t, 5>& data);

/// The token with which the desktop has started this process, which removes it from the environment: it is good for one
/// window, and not for child processes. Empty without one.
QByteArray takeStartupToken();

/// Whether a token from another process is one, and not some megabytes of anything.
bool isActivationToken(const QByteArray& token);

/// Attaches the token with which the desktop accompanies a user's action to the window that is shown for it. Must be
/// called before the window is shown. Anything that is no token counts as none.
void setActivationToken(QWidget& window, const QByteArray& token);

/// Gives a visible window the keyboard focus, because the user has just asked for this window, and tells the desktop
/// that what the token stands for is done.
void takeFocus(QWidget& window, const QByteArray& token);

} // namespace tallyfox
