#include "Tallyfox/Agent/Shell/ClickCatcher.h"

#include "Tallyfox/Agent/Desktop/LayerShell.h"

#include <QMargins>
#include <QScreen>

#include <utility>

namespace tallyfox {

ClickCatcher::ClickCatcher(QScreen& screen, std::function<void()> onClick)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint)
    , m_onClick(std::move(onClick))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setScreen(&screen);
    resize(screen.size());
    const Qt::Edges all = Qt::TopEdge | Qt::BottomEdge | Qt::LeftEdge | Qt::RightEdge;
    makeLayerSurface(*this, LayerRole::clickCatcher, all, {});
}

void ClickCatcher::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    m_onClick();
}

} // namespace tallyfox
