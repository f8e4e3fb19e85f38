#pragma once

#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"
#include "Tallyfox/Agent/Shortcut/ShortcutKeys.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

#include <optional>
#include <xcb/xcb.h>

namespace tallyfox {

/// The keyboard of an X server, read through the XKB extension: the core protocol cannot tell the user's layouts apart.
/// Every server of this century has it.
class X11Keyboard {
public:
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The keyboard as it is now; blocks for the server's replies. Without keys when the server has no XKB.
    [[nodiscard]] Keyboard read() const;

    /// Whether an event means that the keyboard must be read again: a layout or a device has changed since `before`, or
    /// the user has switched to another layout.
    [[nodiscard]] bool isChange(const xcb_generic_event_t& event, const Keyboard& before) const;

private:
    xcb_connection_t* m_connection;
    std::uint8_t m_eventCode = 0; ///< of the extension; 0 without it
};

/// A grab of the keys, on the application's own connection: while one of its popups has the keyboard, no other client's
/// grab gets the keys. Keys that another program has grabbed stay with that program. Window managers that grab the
/// Super key, to show an overview when it is pressed alone, keep the keys that follow: no other client's grab gets
/// those.
class X11Shortcut : public GlobalShortcut, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `connection` is the application's, whose events Qt reads.
    explicit X11Shortcut(xcb_connection_t* connection);
    /// Releases the keys.
    ~X11Shortcut() override;

    /// Grabs the keys once more that were refused, and finds out whether they would arrive: the server reports neither
    /// by itself. Blocks for its replies.
    void check() override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    bool handlePress(const xcb_key_press_event_t& press);
    void updateGrab();
    void updateState();
    [[nodiscard]] bool grab();
    void release();

    xcb_connection_t* m_connection;
    X11Keyboard m_x11Keyboard;
    Keyboard m_keyboard;
    std::optional<ShortcutKeys> m_keys; ///< the grabbed ones
    std::optional<xcb_timestamp_t> m_releaseTime; ///< of the last release of a key of the shortcut
    QTimer m_changeTimer; ///< a change of the layout causes many events
};

} // namespace tallyfox
