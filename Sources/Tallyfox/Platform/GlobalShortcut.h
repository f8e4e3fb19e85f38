#pragma once

#include <QObject>

#include <memory>

namespace tallyfox {

/// Super+Alt+B wherever the keyboard's focus is, for as long as the object lives. A desktop that refuses, or another
/// program that has the keys already, is no error: the shortcut then does nothing.
class GlobalShortcut : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void activated();
};

/// The global shortcut as this session can have it: a key grab under X11, the portal under Wayland. Never null.
std::unique_ptr<GlobalShortcut> registerGlobalShortcut();

} // namespace tallyfox
