#pragma once

#include "Tallyfox/Agent/Popover/PopoverView.h"

#include <QElapsedTimer>
#include <QPoint>
#include <QPropertyAnimation>
#include <QRect>
#include <QSize>
#include <QWidget>

#include <optional>

namespace tallyfox {

/// The window of the popover: opens beside the status item, has the keyboard at once, and closes on a click outside and
/// on Escape. Created once, then hidden and shown again.
class PopoverWindow : public QWidget {
    Q_OBJECT

public:
    explicit PopoverWindow(QWidget* parent = nullptr);

    [[nodiscard]] PopoverView& view()
    {
        return *m_view;
    }

    /// Opens it beside a click on the status item; without one, at the end of the panel, or in the middle of the
    /// screen with the pointer where there is no panel.
    void open(std::optional<QPoint> click);

    /// Whether it has just been closed because another window took the focus, which closes it where it is an ordinary
    /// window. If a click on the status item did that, the panel reports the click afterwards, and it must not open the
    /// popover again.
    [[nodiscard]] bool hasJustLostFocus() const;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void stayOnScreen();

    PopoverView* m_view;
    QPropertyAnimation m_fade;
    std::optional<QPoint> m_click; ///< where the status item was clicked
    bool m_isClickedOutside = false; ///< a button that was pressed outside is still down
    QElapsedTimer m_sinceDeactivation;
};

/// A screen, in logical pixels of the whole desktop.
struct ScreenArea {
    QRect screen;
    QRect workArea; ///< what panels leave free
};

/// The top left corner of a popover of `size`: next to the panel on which the status item was clicked, centred on the
/// click, inside the work area. It is some pixels away from a click on a panel that reserves no space. A popover larger
/// than the work area keeps its top left corner inside.
QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size);

/// The same without a click: at the right or lower end of the panel, where status items usually are. Nothing when no
/// side of the screen has a panel.
std::optional<QPoint> popoverPosition(const ScreenArea& area, const QSize& size);

/// Centred in the work area.
QPoint centredPosition(const ScreenArea& area, const QSize& size);

} // namespace tallyfox
