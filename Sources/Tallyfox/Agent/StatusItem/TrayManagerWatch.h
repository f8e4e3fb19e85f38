#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

struct xcb_connection_t;

namespace tallyfox {

/// Watches for an X11 tray (XEmbed), the owner of the screen's tray selection: trays may start late, end and be
/// replaced. On other platforms there is none.
class TrayManagerWatch : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit TrayManagerWatch(QObject* parent = nullptr);

    /// The tray's window; 0 when there is no tray.
    [[nodiscard]] quint32 manager() const
    {
        return m_manager;
    }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

Q_SIGNALS:
    /// From the event loop, so that Qt has seen the change as well.
    void managerChanged();

private:
    void findManager();
    void setManager(quint32 window);

    xcb_connection_t* m_connection = nullptr; ///< Qt's own
    quint32 m_selection = 0;
    quint32 m_announcement = 0;
    quint32 m_manager = 0;
    QTimer m_changeTimer;
};

} // namespace tallyfox
