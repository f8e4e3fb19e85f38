#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

struct xcb_connection_t;

namespace tallyfox {

/// Whether an X11 tray (XEmbed) is there: the owner of the screen's tray selection. Follows trays that start late, end
/// and are replaced. Outside of X11 there is never one.
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
    /// Comes through the event loop, so that the toolkit has seen the news as well.
    void managerChanged();

private:
    void findManager();
    void setManager(quint32 window);

    xcb_connection_t* m_connection = nullptr; ///< the toolkit's own
    quint32 m_selection = 0;
    quint32 m_announcement = 0;
    quint32 m_manager = 0;
    QTimer m_news;
};

} // namespace tallyfox
