#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItemAdaptor.h"

#include <QDBusMessage>

#include <utility>

namespace tallyfox {

namespace {

QString path()
{
    return QStringLiteral("/StatusNotifierItem");
}

StatusNotifierPixmaps pixmaps(const QString& number)
{
    StatusNotifierPixmaps result;
    for (const int side : StatusIconPainter::sides)
        result.append(statusNotifierPixmap(StatusIconPainter::image(number, side)));
    return result;
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QString& id, const StatusItemContent& content, const QDBusConnection& bus,
                                       QObject* parent)
    : QObject{parent}
    , m_bus{bus}
    , m_content{content}
    , m_number{StatusIconPainter::number(content.title)}
    , m_icon{pixmaps(m_number)}
    , m_adaptor{new StatusNotifierItemAdaptor{id, *this}}
{
    registerStatusNotifierTypes();
    m_bus.registerObject(path(), this, QDBusConnection::ExportAdaptors);
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_bus.unregisterObject(path());
}

const StatusItemContent& StatusNotifierItem::content() const
{
    return m_content;
}

const StatusNotifierPixmaps& StatusNotifierItem::icon() const
{
    return m_icon;
}

void StatusNotifierItem::setContent(const StatusItemContent& content)
{
    const StatusItemContent previous = std::exchange(m_content, content);
    QVariantMap changed;
    if (content.accessibilityLabel != previous.accessibilityLabel) {
        changed[QStringLiteral("Title")] = m_adaptor->title();
        changed[QStringLiteral("ToolTip")] = QVariant::fromValue(m_adaptor->toolTip());
        Q_EMIT m_adaptor->NewTitle();
        Q_EMIT m_adaptor->NewToolTip();
    }
    if (content.title != previous.title) {
        changed[QStringLiteral("XAyatanaLabel")] = m_adaptor->label();
        Q_EMIT m_adaptor->XAyatanaNewLabel(m_adaptor->label(), m_adaptor->labelGuide());
    }
    if (const QString number = StatusIconPainter::number(content.title); number != m_number) {
        m_number = number;
        m_icon = pixmaps(number);
        Q_EMIT m_adaptor->NewIcon();
    }
    if (!changed.isEmpty())
        tellProperties(changed);
}

/// For peers that cache properties. Pictures are left to NewIcon: panels fetch them once for all sizes.
void StatusNotifierItem::tellProperties(const QVariantMap& changed)
{
    QDBusMessage signal = QDBusMessage::createSignal(path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.kde.StatusNotifierItem") << changed << QStringList{};
    m_bus.send(signal);
}

} // namespace tallyfox
