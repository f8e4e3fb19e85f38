#pragma once

#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"
#include "Tallyfox/Agent/Shortcut/ShortcutKeys.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

#include <optional>
#include <xcb/xcb.h>

namespace tallyfox {

/// The keyboard of an X server. It is read through the XKB extension, which alone knows the user's layouts apart; every
/// server of this century has it.
class X11Keyboard {
public:
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The keyboard as it is now; the server's answers are waited for. Without keys when the server has no XKB.
    [[nodiscard]] Keyboard read() const;

    /// Whether an event says that a keyboard which has been read is another now: a layout or a device has changed, or
    /// the user has gone from one layout to the next.
    [[nodiscard]] bool tellsOfChange(const xcb_generic_event_t& event, const Keyboard& before) const;

private:
    xcb_connection_t* m_connection;
    std::uint8_t m_eventCode = 0; ///< of the extension; 0 without it
};

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
