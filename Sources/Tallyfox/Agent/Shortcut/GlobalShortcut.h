#pragma once

#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QByteArray>
#include <QObject>
#include <QStringView>

#include <memory>
#include <vector>

namespace tallyfox {

/// What becomes of the keys.
enum class ShortcutState {
    notInForce, ///< they do nothing, or only while certain windows have the focus
    onRequest, ///< the same, until the user lets the program ask the desktop for them
    inForce,
};

/// Super+Alt+B, whichever window has the focus. Must be destroyed before the application object. It is not an error
/// when the desktop refuses the shortcut or another program has the keys: the shortcut is then not in force.
class GlobalShortcut : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] ShortcutState state() const
    {
        return m_state;
    }

    /// Finds out what the desktop does not report by itself: `state` may change now, or later.
    virtual void check() { }

    /// Asks the desktop for the keys, on behalf of the user. The desktop may show a window.
    virtual void request() { }

Q_SIGNALS:
    /// The keys have been pressed; once, however long they are held. From the event loop, not while the key event is
    /// handled.
    void activated();
    void stateChanged(ShortcutState state);

protected:
    void setState(ShortcutState state);

private:
    ShortcutState m_state = ShortcutState::notInForce;
};

/// What can provide a session's global shortcut.
enum class ShortcutBackEnd {
    kdeService, ///< KDE's service for global shortcuts
    portal, ///< the desktop portal
    keyGrab, ///< the X server
};

/// The back ends to try in a session, the preferred one first. `platform` is QGuiApplication's name of it, `desktops`
/// the value of XDG_CURRENT_DESKTOP. An X11 program under Wayland has a grab as well, which works only while another
/// X11 program has the focus.
std::vector<ShortcutBackEnd> shortcutBackEnds(QStringView platform, bool isWaylandSession, const QByteArray& desktops);

/// The global shortcut of this session, provided by the first of its back ends that works at the moment. Never null.
/// A desktop that may show a window is asked at the start only where `userDefaults` has the user's consent, which is
/// stored there when a request is granted and withdrawn when it is declined.
std::unique_ptr<GlobalShortcut> registerGlobalShortcut(const UserDefaults& userDefaults);

} // namespace tallyfox
