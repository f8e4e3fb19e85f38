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

/// The window of the popover: opens beside the status item, has the keyboard at once, and closes on a click outside
/// and on Escape. Made once, then hidden and shown again.
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

    /// Where it is an ordinary window: whether it has just been closed because another window took the focus. Where
    /// that was by a click on the status item, the panel reports it afterwards, and it must not open the popover again.
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
    std::optional<QPoint> m_click; ///< what it was opened beside
    bool m_isClickedOutside = false; ///< a button is down that was pressed outside
    QElapsedTimer m_sinceDeactivation;
};

/// A screen, in logical pixels of the whole desktop.
struct ScreenArea {
    QRect screen;
    QRect workArea; ///< what panels leave free
};

/// Where the top left corner of a popover of `size` goes: beside the panel at the side where the status item was
/// clicked, centred on the click, and inside of the work area. A panel that reserves no room is kept clear of by
/// some pixels. A popover larger than the work area keeps its top left corner inside.
QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size);

/// The same without a click: at the end of the panel where items usually stand, which is the right or the lower one;
/// nothing when no side of the screen is taken by a panel.
std::optional<QPoint> popoverPosition(const ScreenArea& area, const QSize& size);

/// The middle of the work area.
QPoint centredPosition(const ScreenArea& area, const QSize& size);

} // namespace tallyfox
