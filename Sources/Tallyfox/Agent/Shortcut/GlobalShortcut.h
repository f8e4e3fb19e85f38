#pragma once

#include <QObject>
#include <QStringView>

#include <memory>
#include <vector>

namespace tallyfox {

/// Super+Alt+B, whichever window has the focus. Must be destroyed before the application object. It is not an error
/// when the desktop refuses the shortcut or another program has the keys: the shortcut then does nothing.
class GlobalShortcut : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The keys have been pressed; once, however long they are held. From the event loop, not while the key event is
    /// handled.
    void activated();
};

/// What can provide a session's global shortcut.
enum class ShortcutBackEnd {
    portal, ///< the desktop portal
    keyGrab, ///< the X server
};

/// The back ends to try in a session, the preferred one first. `platform` is QGuiApplication's name of it. An X11
/// program under Wayland has both: its grab works only while another X11 program has the focus.
std::vector<ShortcutBackEnd> shortcutBackEnds(QStringView platform, bool isWaylandSession);

/// The global shortcut of this session, provided by the first of its back ends that works at the moment. Never null.
std::unique_ptr<GlobalShortcut> registerGlobalShortcut();

} // namespace tallyfox
