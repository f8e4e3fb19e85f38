#pragma once

#include <QWidget>

#include <functional>

namespace tallyfox {

/// An invisible layer surface over what panels leave free of a screen. A compositor gives no other window the focus
/// while a layer surface keeps it, so that one learns of clicks elsewhere only in this way.
class ClickCatcher : public QWidget {
public:
    /// `onClick` is called when a button is released, and must not destroy the object.
    ClickCatcher(QScreen& screen, std::function<void()> onClick);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::function<void()> m_onClick;
};

} // namespace tallyfox
