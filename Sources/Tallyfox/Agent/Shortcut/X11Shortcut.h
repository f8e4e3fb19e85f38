#pragma once

#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"
#include "Tallyfox/Agent/Shortcut/X11Keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

#include <optional>

namespace tallyfox {

/// The keys grabbed from the X server, on the application's own connection: while one of its popups has the keyboard,
/// no grab of anybody else would see them. Keys that another program has grabbed stay with that program.
class X11Shortcut : public GlobalShortcut, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `connection` is the application's, whose events Qt reads.
    explicit X11Shortcut(xcb_connection_t* connection);
    /// Gives the keys back.
    ~X11Shortcut() override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    bool take(const xcb_key_press_event_t& press);
    void followKeyboard();
    void grab();
    void release();

    xcb_connection_t* m_connection;
    X11Keyboard m_source;
    Keyboard m_keyboard;
    std::optional<ShortcutKeys> m_keys; ///< those that are grabbed
    std::optional<xcb_timestamp_t> m_releaseTime; ///< of the last key of the shortcut that was let go
    QTimer m_change; ///< one change of the layout makes many events
};

} // namespace tallyfox
