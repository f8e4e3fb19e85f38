#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierWatch.h"
#include "Tallyfox/Agent/StatusItem/TrayIcon.h"
#include "Tallyfox/Agent/StatusItem/TrayManagerWatch.h"

#include <QTimer>

#include <chrono>
#include <memory>

namespace tallyfox {

/// The status item of Linux desktops: on the bus where a panel reads it there, else as an icon in the X11 tray. Never
/// both, whichever comes first.
class PanelStatusItem : public StatusItem {
    Q_OBJECT

public:
    /// Desktops that start the program and the panel together get this long to bring the panel up.
    static constexpr std::chrono::seconds panelStart{5};

    /// `bus` should be a connection of the item's own. `grace` is the time without any panel after which the item is
    /// said to be unavailable.
    PanelStatusItem(const QString& id, const StatusItemContent& content, const QDBusConnection& bus,
                    std::chrono::milliseconds grace = panelStart);

    void setContent(const StatusItemContent& content) override;

private:
    void update();
    void placeTrayIcon();
    void judgeAvailability();

    StatusNotifierItem m_item;
    StatusNotifierWatch m_watch;
    TrayManagerWatch m_trayWatch;
    std::unique_ptr<TrayIcon> m_trayIcon;
    QTimer m_traySettles;
    QTimer m_grace;
    bool m_isJudged = false; ///< a panel has been there, or the lack of one has been told
};

} // namespace tallyfox
