#include "Tallyfox/Agent/StatusItem/PanelStatusItem.h"

#include "Tallyfox/Agent/StatusItem/ClickPosition.h"

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

/// Panels with both kinds of tray announce one after the other.
constexpr auto trayToSettle = 300ms;

} // namespace

PanelStatusItem::PanelStatusItem(const QString& id, const StatusItemContent& content, const QDBusConnection& bus,
                                 std::chrono::milliseconds grace)
    : m_item{id, content, bus}
    , m_watch{bus}
{
    connect(&m_item, &StatusNotifierItem::activated, this,
            [this](QPoint reported) { Q_EMIT activated(clickPosition(reported)); });
    connect(&m_watch, &StatusNotifierWatch::hostChanged, this, &PanelStatusItem::update);
    connect(&m_trayWatch, &TrayManagerWatch::managerChanged, this, [this] {
        m_trayIcon.reset(); // it was the previous tray's
        update();
    });
    m_traySettles.setSingleShot(true);
    m_traySettles.setInterval(trayToSettle);
    connect(&m_traySettles, &QTimer::timeout, this, &PanelStatusItem::placeTrayIcon);
    m_grace.setSingleShot(true);
    connect(&m_grace, &QTimer::timeout, this, &PanelStatusItem::judgeAvailability);
    m_grace.start(grace);
    update();
}

void PanelStatusItem::setContent(const StatusItemContent& content)
{
    m_item.setContent(content);
    if (m_trayIcon)
        m_trayIcon->setContent(content);
}

void PanelStatusItem::update()
{
    const bool wantsTrayIcon = m_watch.host() == StatusNotifierHost::absent && m_trayWatch.manager() != 0;
    if (!wantsTrayIcon) {
        m_traySettles.stop();
        m_trayIcon.reset();
    } else if (!m_trayIcon) {
        m_traySettles.start();
    }
    judgeAvailability();
}

void PanelStatusItem::placeTrayIcon()
{
    m_trayIcon = std::make_unique<TrayIcon>(m_item.content());
    connect(m_trayIcon.get(), &TrayIcon::activated, this, &PanelStatusItem::activated);
}

void PanelStatusItem::judgeAvailability()
{
    const StatusNotifierHost host = m_watch.host();
    const bool isThere = host == StatusNotifierHost::present || m_trayWatch.manager() != 0;
    const bool isUndecided = m_grace.isActive() || host == StatusNotifierHost::unknown;
    if (m_isJudged || (!isThere && isUndecided))
        return;
    m_isJudged = true;
    if (!isThere)
        Q_EMIT isUnavailable();
}

} // namespace tallyfox
