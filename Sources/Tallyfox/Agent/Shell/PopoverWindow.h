#pragma once

#include "Tallyfox/Agent/Popover/PopoverView.h"

#include <QElapsedTimer>
#include <QPropertyAnimation>
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

Q_SIGNALS:
    void opened();
    void closed();

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

} // namespace tallyfox
