#pragma once

#include <QObject>

#include <memory>

namespace tallyfox {

/// Super+Alt+B wherever the keyboard's focus is, for as long as the object lives, which must end before the
/// application object. A desktop that refuses, or another program that has the keys already, is no error: the shortcut
/// then does nothing.
class GlobalShortcut : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The keys have been pressed; once however long they are held. From the event loop, never within the handling of
    /// the key.
    void activated();
};

/// The global shortcut as this session can have it: a key grab under X11, the portal under Wayland, both for an X11
/// program under Wayland, whose grab reaches no further than other X11 programs. Never null.
std::unique_ptr<GlobalShortcut> registerGlobalShortcut();

} // namespace tallyfox
