#include "Tallyfox/Agent/StatusItem/StatusItem.h"

#include "Tallyfox/Agent/Bus/OwnConnection.h"
#include "Tallyfox/Agent/Bus/ServiceCall.h"
#include "Tallyfox/Agent/StatusItem/ClickPosition.h"
#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"
#include "Tallyfox/Agent/StatusItem/TrayManagerWatch.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusPendingReply>
#include <QSystemTrayIcon>
#include <QTimer>

#include <utility>

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

/// A panel with both kinds of tray announces them one after the other.
constexpr auto traySettleTime = 300ms;

/// On the bus where a panel reads it there, else in the X11 tray, whichever comes first.
class PanelStatusItem : public StatusItem {
public:
    PanelStatusItem(const QString& id, const QDBusConnection& bus, std::chrono::milliseconds grace)
        : m_bus{bus}
        , m_menu{bus}
        , m_item{id, bus}
        , m_watch{bus}
    {
        connect(&m_item, &StatusNotifierItem::activated, this,
                [this](QPoint reported) { Q_EMIT activated(clickPosition(reported)); });
        connect(&m_item, &StatusNotifierItem::pictureRead, this, [this] {
            m_isRead = true;
            checkAvailability();
        });
        connect(&m_menu, &StatusMenu::chosen, this, &PanelStatusItem::chosen);
        connect(&m_watch, &StatusNotifierWatch::hostChanged, this, [this] {
            m_grace.start(); // a panel gets its time from when it is there
            findOutWhetherLabelIsShown();
            update();
        });
        connect(&m_item, &StatusNotifierItem::activationTokenProvided, this, &StatusItem::activationTokenProvided);
        connect(&m_trayWatch, &TrayManagerWatch::managerChanged, this, [this] {
            m_trayIcon.reset(); // it was in the previous tray
            update();
        });
        m_traySettles.setSingleShot(true);
        m_traySettles.setInterval(traySettleTime);
        connect(&m_traySettles, &QTimer::timeout, this, &PanelStatusItem::placeTrayIcon);
        m_grace.setSingleShot(true);
        connect(&m_grace, &QTimer::timeout, this, &PanelStatusItem::checkAvailability);
        m_grace.start(grace);
        update();
    }

    void setMenu(const StatusMenuContent& content) override
    {
        m_menu.setContent(content);
    }

    void setContent(const StatusItemContent& content) override
    {
        const QString before = StatusIconPainter::number(m_item.content().percent);
        m_item.setContent(content);
        if (!m_trayIcon)
            return;
        m_trayIcon->setToolTip(content.fullText());
        if (const QString number = StatusIconPainter::number(content.percent); number != before)
            m_trayIcon->setIcon(StatusIconPainter::icon(number));
    }

private:
    void update()
    {
        const bool wantsTrayIcon = m_watch.host() == StatusNotifierHost::absent && m_trayWatch.manager() != 0;
        if (!wantsTrayIcon) {
            m_traySettles.stop();
            m_trayIcon.reset();
        } else if (!m_trayIcon) {
            m_traySettles.start();
        }
        checkAvailability();
    }

    /// Only while no panel reads the item on the bus: Qt would put this icon onto the bus as well.
    void placeTrayIcon()
    {
        const StatusItemContent& content = m_item.content();
        m_trayIcon =
            std::make_unique<QSystemTrayIcon>(StatusIconPainter::icon(StatusIconPainter::number(content.percent)));
        m_trayIcon->setToolTip(content.fullText());
        connect(m_trayIcon.get(), &QSystemTrayIcon::activated, this, [this] {
            const QRect geometry = m_trayIcon->geometry();
            Q_EMIT activated(geometry.isValid() ? geometry.center() : QCursor::pos());
        });
        m_trayIcon->show();
    }

    /// GNOME's extension shows label and picture side by side. Other panels show one of them, and do not say which.
    void findOutWhetherLabelIsShown()
    {
        if (m_watch.host() != StatusNotifierHost::present)
            return;
        QDBusMessage call =
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                           QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
        callService(*this, m_bus, call << QStringLiteral("org.gnome.Shell"), [this](const QDBusPendingCall& finished) {
            const QDBusPendingReply<QString> shell = finished;
            m_item.setLabelShown(shell.isValid() && shell.value() == m_watch.watcher());
        });
    }

    /// A panel that shows the item has read its picture, and its watcher has not dropped it.
    void checkAvailability()
    {
        const StatusNotifierHost host = m_watch.host();
        const bool isDropped = host == StatusNotifierHost::refusing;
        const bool isShown = (m_isRead && !isDropped) || m_trayWatch.manager() != 0;
        m_wasShown = isShown || (m_wasShown && !isDropped);
        if (m_wasShown && !std::exchange(m_isAnnounced, true))
            QMetaObject::invokeMethod(this, &StatusItem::shown, Qt::QueuedConnection); // not while it is constructed
        const bool isUndecided = m_grace.isActive() || host == StatusNotifierHost::unknown;
        if (m_wasShown || isUndecided || std::exchange(m_isReported, true))
            return;
        Q_EMIT unavailable();
    }

    QDBusConnection m_bus;
    StatusMenu m_menu;
    StatusNotifierItem m_item;
    StatusNotifierWatch m_watch;
    TrayManagerWatch m_trayWatch;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    QTimer m_traySettles;
    QTimer m_grace;
    bool m_isRead = false; ///< by some panel
    bool m_wasShown = false; ///< panels may end and start again
    bool m_isAnnounced = false; ///< by `shown`
    bool m_isReported = false; ///< by `unavailable`
};

/// The connection is a base class so that it outlives the item.
class SessionStatusItem : private OwnConnection, public PanelStatusItem {
public:
    explicit SessionStatusItem(const QString& id)
        : OwnConnection{id + QStringLiteral(".status-item")}
        , PanelStatusItem{id, bus(), 5s}
    { }
};

} // namespace

QString StatusItemContent::shortText() const
{
    return percent ? QStringLiteral(" %1%").arg(*percent) : QString{};
}

QString StatusItemContent::fullText() const
{
    return percent ? QCoreApplication::translate("StatusItem", "Tallyfox, %1 percent used").arg(*percent)
                   : QStringLiteral("Tallyfox");
}

std::unique_ptr<StatusItem> makeStatusItem(const QString& id)
{
    return std::make_unique<SessionStatusItem>(id);
}

std::unique_ptr<StatusItem> makeStatusItem(const QString& id, const QDBusConnection& bus,
                                           std::chrono::milliseconds grace)
{
    return std::make_unique<PanelStatusItem>(id, bus, grace);
}

} // namespace tallyfox
