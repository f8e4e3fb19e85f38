#pragma once

#include "Tallyfox/Agent/StatusItem/StatusNotifierTypes.h"

#include <QDBusAbstractAdaptor>

namespace tallyfox {

class StatusNotifierItem;

/// The interface of a status notifier item, its members named as they are on the bus. Properties that say nothing are
/// there all the same: panels ask for them, and some log every one they miss.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category MEMBER m_category CONSTANT)
    Q_PROPERTY(QString Id MEMBER m_id CONSTANT)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status MEMBER m_status CONSTANT)
    Q_PROPERTY(int WindowId MEMBER m_windowId CONSTANT)
    Q_PROPERTY(QString IconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps OverlayIconPixmap MEMBER m_noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierPixmaps AttentionIconPixmap MEMBER m_noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName MEMBER m_noName CONSTANT)
    Q_PROPERTY(tallyfox::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu MEMBER m_itemIsMenu CONSTANT)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide MEMBER m_labelGuide CONSTANT)
    Q_PROPERTY(uint XAyatanaOrderingIndex MEMBER m_orderingIndex CONSTANT)

public:
    StatusNotifierItemAdaptor(const QString& id, StatusNotifierItem& item);

    [[nodiscard]] QString title() const;
    [[nodiscard]] StatusNotifierPixmaps iconPixmap() const;
    [[nodiscard]] StatusNotifierToolTip toolTip() const;
    [[nodiscard]] QString label() const;
    [[nodiscard]] QString labelGuide() const;

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void XAyatanaNewLabel(const QString& label, const QString& guide);

private:
    StatusNotifierItem& m_item;
    QString m_category = QStringLiteral("ApplicationStatus");
    QString m_id;
    QString m_status = QStringLiteral("Active");
    int m_windowId = 0;
    QString m_noName; // with a name, most panels pass over the pixmap, and so the number
    StatusNotifierPixmaps m_noPixmap;
    bool m_itemIsMenu = false;
    QString m_labelGuide = QStringLiteral(" 100%");
    uint m_orderingIndex = 0;
};

} // namespace tallyfox
