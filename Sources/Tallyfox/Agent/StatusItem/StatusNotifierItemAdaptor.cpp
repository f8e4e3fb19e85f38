#include "Tallyfox/Agent/StatusItem/StatusNotifierItemAdaptor.h"

#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

namespace tallyfox {

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(const QString& id, StatusNotifierItem& item)
    : QDBusAbstractAdaptor{&item}
    , m_item{item}
    , m_id{id}
{ }

QString StatusNotifierItemAdaptor::title() const
{
    return m_item.content().accessibilityLabel;
}

StatusNotifierPixmaps StatusNotifierItemAdaptor::iconPixmap() const
{
    return m_item.icon();
}

StatusNotifierToolTip StatusNotifierItemAdaptor::toolTip() const
{
    return {{}, {}, title(), {}};
}

QString StatusNotifierItemAdaptor::label() const
{
    return m_item.content().title;
}

QString StatusNotifierItemAdaptor::labelGuide() const
{
    return m_labelGuide;
}

void StatusNotifierItemAdaptor::Activate(int x, int y)
{
    Q_EMIT m_item.activated({x, y});
}

// Some panels never send Activate, so every button means the same.
void StatusNotifierItemAdaptor::SecondaryActivate(int x, int y)
{
    Q_EMIT m_item.activated({x, y});
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y)
{
    Q_EMIT m_item.activated({x, y});
}

void StatusNotifierItemAdaptor::Scroll(int /*delta*/, const QString& /*orientation*/) { }

// The popover takes the focus through the X server, which knows no such tokens.
void StatusNotifierItemAdaptor::ProvideXdgActivationToken(const QString& /*token*/) { }

} // namespace tallyfox
