#pragma once

#include "Tallyfox/Agent/Popover/PopoverView.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QPoint>
#include <QPropertyAnimation>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace tallyfox {

class ClickCatcher;

/// What the popover is to the desktop.
enum class PopoverKind {
    popup, ///< places itself and grabs pointer and keyboard: the way of X11
    x11Window, ///< places itself and has the focus: for an X server of a Wayland compositor, where grabs see X windows
               ///< only
    waylandWindow, ///< is placed by the compositor and has the focus
    layerSurface, ///< the same, beside the compositor's panels
};

/// `platform` is Qt's name of it.
PopoverKind popoverKind(const QString& platform, bool isWaylandSession, bool hasLayerShell);

/// The window of the popover: opens beside the status item, has the keyboard at once, and closes on a click outside and
/// on Escape. Created once, then hidden and shown again.
class PopoverWindow : public QWidget {
    Q_OBJECT

public:
    explicit PopoverWindow(PopoverKind kind, QWidget* parent = nullptr);
    ~PopoverWindow() override;

    [[nodiscard]] PopoverView& view()
    {
        return *m_view;
    }

    /// Opens it beside a click on the status item; without one, at the end of the panel. `activationToken` is what the
    /// desktop sent with the user's action, if anything.
    void open(std::optional<QPoint> click, const QByteArray& activationToken);

    /// Whether it has just been closed because another window took the focus. If that was due to a click on the status
    /// item, the panel reports the click afterwards, and it must not open the popover again. Only panels of pure
    /// Wayland sessions take the focus.
    [[nodiscard]] bool hasJustLostFocus() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void stayOnScreen();
    void showPopup();
    void showWindow(const QByteArray& activationToken);
    void attachToPanel();
    void holdGrabs();
    void followFocus(const QWindow* focused);
    void closeAfterFocusLoss();

    PopoverKind m_kind;
    PopoverView* m_view;
    QPropertyAnimation m_fade;
    std::optional<QPoint> m_click; ///< where the status item was clicked
    bool m_isClickedOutside = false; ///< a button that was pressed outside is still down
    bool m_hasHadFocus = false; ///< since it was opened
    QTimer m_lateFocus;
    QElapsedTimer m_sinceFocusLoss;
    std::vector<std::unique_ptr<ClickCatcher>> m_clickCatchers; ///< while the popover is a visible layer surface
    QTimer m_grabRetries;
    std::chrono::milliseconds m_grabInterval{};
};

} // namespace tallyfox
