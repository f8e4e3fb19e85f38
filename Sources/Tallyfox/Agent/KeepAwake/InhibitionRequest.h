#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace tallyfox {

/// What one service is asked for, and holds for as long as the object lives. A grant that comes too late, when the
/// object is gone, is given back at once.
class InhibitionRequest : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // Each at most once, from the event loop; the receiver may delete the object.
    void granted();
    void failed(); ///< refused, not understood, or, after `granted`, lost

protected:
    void grant()
    {
        QMetaObject::invokeMethod(this, "granted", Qt::QueuedConnection);
    }
    void fail()
    {
        if (m_hasFailed)
            return;
        m_hasFailed = true;
        QMetaObject::invokeMethod(this, "failed", Qt::QueuedConnection);
    }

private:
    bool m_hasFailed = false;
};

/// Who asks, where, and for what.
struct InhibitionContext {
    QDBusConnection bus;
    QObject& keeper; ///< of calls that are under way; outlives the requests
    QString reason;
};

} // namespace tallyfox
