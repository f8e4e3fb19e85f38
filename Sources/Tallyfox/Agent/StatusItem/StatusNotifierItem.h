#pragma once

#include "Tallyfox/Agent/StatusItem/StatusItem.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierTypes.h"

#include <QDBusConnection>
#include <QObject>
#include <QPoint>

namespace tallyfox {

class StatusNotifierItemAdaptor;

/// The status item as an object on the bus, where panels read it. Panels must be told of it: see StatusNotifierWatch.
class StatusNotifierItem : public QObject {
    Q_OBJECT

public:
    /// `bus` should be a connection of the item's own: panels know the item by it.
    StatusNotifierItem(const QString& id, const StatusItemContent& content, const QDBusConnection& bus,
                       QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    [[nodiscard]] const StatusItemContent& content() const;
    [[nodiscard]] const StatusNotifierPixmaps& icon() const;
    /// Tells the panels what has changed, and nothing when nothing has.
    void setContent(const StatusItemContent& content);

Q_SIGNALS:
    /// The user has clicked, with any button; `position` is what the panel says of it.
    void activated(QPoint position);

private:
    void tellProperties(const QVariantMap& changed);

    QDBusConnection m_bus;
    StatusItemContent m_content;
    QString m_number;
    StatusNotifierPixmaps m_icon;
    StatusNotifierItemAdaptor* m_adaptor;
};

} // namespace tallyfox
