#pragma once

#include <Qt>

class QMargins;
class QWidget;

namespace tallyfox {

/// Whether the compositor of this session has the layer shell, and this build can use it: with it a native Wayland
/// client can put a window beside a panel. Asks the compositor on a connection of its own, and waits for the answer.
bool hasLayerShell();

enum class LayerRole {
    popover, ///< above other windows and panels; has the keyboard until it is hidden
    clickCatcher, ///< above other windows, below the popover
};

/// Makes a window of a native Wayland client a layer surface that is attached to these edges of its screen, beside the
/// panels there. Must be called before the window is shown.
void makeLayerSurface(QWidget& window, LayerRole role, Qt::Edges edges, const QMargins& margins);

} // namespace tallyfox
