#pragma once

#include <QScrollArea>

namespace tallyfox {

/// Scrolls its widget vertically. The widget is always as wide as the area: the slim scroll bar overlays its right
/// margin and is only visible if there is something to scroll.
class OverlayScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit OverlayScrollArea(QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void followRange();

    QScrollBar* m_slimBar;
};

} // namespace tallyfox
